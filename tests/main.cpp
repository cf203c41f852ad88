#include <gtest/gtest.h>

#include <cstdio>

// GoogleTest's own main reports success when a filter, or a source that did not get linked, leaves nothing to run.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (!testing::GTEST_FLAG(list_tests) && testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        std::fputs("no test was run\n", stderr);
        return 1;
    }
    return result;
}
