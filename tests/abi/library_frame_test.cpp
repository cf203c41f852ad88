#include <gtest/gtest.h>

#include "abi/library_under_test.h"

namespace tabrin_test {
namespace {

TEST(LibraryFrame, VersionIs131) {
    EXPECT_EQ(LibraryUnderTest::Shared().GetLibraryVersion(), 1.31F);
}

class ExportedFunction : public testing::TestWithParam<const char*> {};

TEST_P(ExportedFunction, IsFoundByItsPlainName) {
    EXPECT_NE(LibraryUnderTest::Shared().Find(GetParam()), nullptr) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(LibraryFrame, ExportedFunction,
                         testing::Values("TabrinGetLibraryVersion", "TabrinReadDbcFile", "TabrinWriteDbcFile",
                                         "TabrinClearData", "TabrinGetDatabaseInfo", "TabrinSetDatabaseInfo",
                                         "TabrinGetNumCanMessages", "TabrinAppendCanMessage", "TabrinGetCanMessageData",
                                         "TabrinGetNumCanSignalsInCanMessage", "TabrinAppendCanSignalToCanMessage",
                                         "TabrinGetCanSignalData", "TabrinGetNumEnumsInCanSignal",
                                         "TabrinAppendEnumToCanSignal", "TabrinGetCanSignalEnumData",
                                         "TabrinGetNumCanErrors", "TabrinGetErrorData"));

TEST(LibraryFrame, OtherNamesAreNotFound) {
    EXPECT_EQ(LibraryUnderTest::Shared().Find("TabrinNoSuchFunction"), nullptr);
}

TEST(LibraryFrame, ACopyOfTheFileCanBeLoadedBesideItAndUnloaded) {
    const std::string copy = LibraryUnderTest::CopyOfLibrary("library_frame_copy.bin");
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        const LibraryUnderTest second(copy);
        EXPECT_NE(second.Find("TabrinClearData"), LibraryUnderTest::Shared().Find("TabrinClearData"));
        EXPECT_EQ(second.GetLibraryVersion(), 1.31F);
    }
}

}  // namespace
}  // namespace tabrin_test
