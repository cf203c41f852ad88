// Paths and files that are out of the ordinary everywhere.
#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class LongPath : public InterfaceTest {};

// 259 bytes are the most that a buffer takes; with characters of two bytes, a Windows path of far fewer units.
TEST_F(LongPath, BeyondAsciiIsWrittenAndRead) {
    std::string name = "/";
    for (int i = 0; i < 40; ++i) {
        name += "\xC3\xA4";
    }
    name += ".dbc";
    std::string path = TABRIN_TEMP_DIR;
    ASSERT_LT(path.size() + name.size(), 258U) << "the folder for temporary files lies too deep for this test";
    // "/." goes nowhere; a second slash in front of the name makes up for an odd number.
    while (path.size() + 2 + name.size() <= 259) {
        path += "/.";
    }
    path += (path.size() + name.size() < 259 ? "/" : "") + name;
    ASSERT_EQ(path.size(), 259U);
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_EQ(WriteFile(path, TABRIN_ORDER_DATABASE), kDone);
    EXPECT_TRUE(std::filesystem::exists(FilePath(TABRIN_TEMP_DIR + name)));
    Library().ClearData();
    EXPECT_EQ(ReadFile(path), kDone);
    EXPECT_EQ(NumMessages(), 1U);
    EXPECT_TRUE(std::filesystem::remove(FilePath(TABRIN_TEMP_DIR + name)));
}

}  // namespace
}  // namespace tabrin_test
