#include "io/file.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

TEST(FileWrite, TakesPiecesOfAnySize) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{2}, size_t{100000}}) {
        SCOPED_TRACE(size);
        const std::string bytes(size, 'x');
        const TempFile target("old");
        File file;
        ASSERT_TRUE(file.OpenForWriting(target.Path()));
        EXPECT_TRUE(file.Write(bytes));
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(ReadBytes(target.Path()), bytes);
    }
}

}  // namespace
}  // namespace tabrin
