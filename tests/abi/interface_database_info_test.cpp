#include <array>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

using Bytes = std::array<unsigned char, 12>;

constexpr unsigned char kFill = 0xA5;

class DatabaseInformation : public InterfaceTest {};

void Set(uint32_t protocolType, uint32_t canFd) {
    const DatabaseInfo info{protocolType, canFd};
    EXPECT_TRUE(Library().SetDatabaseInfo(&info, sizeof info));
}

struct SizeRow {
    size_t size;
    Bytes expected;
};

TEST_F(DatabaseInformation, GettingCopiesAtMostEightBytesAndNoMoreThanAskedFor) {
    const SizeRow rows[] = {
        {0, {kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill}},
        {1, {0x11, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill}},
        {4, {0x11, 0x22, 0x33, 0x44, kFill, kFill, kFill, kFill, kFill, kFill, kFill, kFill}},
        {7, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, kFill, kFill, kFill, kFill, kFill}},
        {8, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, kFill, kFill, kFill, kFill}},
        {9, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, kFill, kFill, kFill, kFill}},
        {100, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, kFill, kFill, kFill, kFill}},
        {SIZE_MAX, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, kFill, kFill, kFill, kFill}},
    };
    Set(0x44332211U, 0x88776655U);
    for (const SizeRow& row : rows) {
        SCOPED_TRACE(testing::Message() << "size " << row.size);
        Bytes bytes;
        bytes.fill(kFill);
        EXPECT_TRUE(Library().GetDatabaseInfo(bytes.data(), row.size));
        EXPECT_EQ(bytes, row.expected);
    }
}

TEST_F(DatabaseInformation, SizeZeroLooksAtNoPointer) {
    Set(1, 1);
    EXPECT_TRUE(Library().GetDatabaseInfo(nullptr, 0));
    EXPECT_TRUE(Library().SetDatabaseInfo(nullptr, 0));
    EXPECT_EQ(Info().protocolType, 1U);
    EXPECT_EQ(Info().canFd, 1U);
}

TEST_F(DatabaseInformation, SettingReplacesAtMostEightBytesAndNoMoreThanGiven) {
    const struct {
        size_t size;
        uint32_t protocolType;
        uint32_t canFd;
    } rows[] = {
        {0, 0xEEEEEEEEU, 0xEEEEEEEEU},   {1, 0xEEEEEE11U, 0xEEEEEEEEU}, {4, 0x44332211U, 0xEEEEEEEEU},
        {7, 0x44332211U, 0xEE776655U},   {8, 0x44332211U, 0x88776655U}, {9, 0x44332211U, 0x88776655U},
        {100, 0x44332211U, 0x88776655U},
    };
    const Bytes source = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "size " << row.size);
        Set(0xEEEEEEEEU, 0xEEEEEEEEU);
        EXPECT_TRUE(Library().SetDatabaseInfo(source.data(), row.size));
        EXPECT_EQ(Info().protocolType, row.protocolType);
        EXPECT_EQ(Info().canFd, row.canFd);
    }
}

TEST_F(DatabaseInformation, ValuesOutsideTheListsAreHandedBackAsGiven) {
    Set(7, 2);
    EXPECT_EQ(Info().protocolType, 7U);
    EXPECT_EQ(Info().canFd, 2U);
}

TEST_F(DatabaseInformation, SettingItLeavesMessagesAlone) {
    ASSERT_TRUE(AppendMessage(1, "Kept"));
    Set(1, 1);
    ASSERT_EQ(NumMessages(), 1U);
    EXPECT_EQ(Field(MessageAt(0).name), "Kept");
}

// Also those outside the lists.
constexpr uint32_t kProtocols[] = {0, 1, 2, 7};
constexpr uint32_t kFdFlags[] = {0, 1, 2};

TEST_F(DatabaseInformation, ClearingResetsTheProtocol) {
    for (const uint32_t protocol : kProtocols) {
        SCOPED_TRACE(protocol);
        Set(protocol, 1);
        EXPECT_TRUE(Library().ClearData());
        EXPECT_EQ(Info().protocolType, 0U);
    }
}

TEST_F(DatabaseInformation, ClearingKeepsTheFdFlag) {
    for (const uint32_t flag : kFdFlags) {
        SCOPED_TRACE(flag);
        Set(2, flag);
        EXPECT_TRUE(Library().ClearData());
        EXPECT_EQ(Info().canFd, flag);
    }
}

TEST_F(DatabaseInformation, ReadingResetsTheProtocol) {
    for (const uint32_t protocol : kProtocols) {
        SCOPED_TRACE(protocol);
        Set(protocol, 1);
        ASSERT_EQ(ReadText("VERSION \"\"\n"), kDone);
        EXPECT_EQ(Info().protocolType, 0U);
    }
}

TEST_F(DatabaseInformation, ReadingAFileWithoutBusTypeKeepsTheFdFlag) {
    for (const uint32_t flag : kFdFlags) {
        SCOPED_TRACE(flag);
        Set(2, flag);
        ASSERT_EQ(ReadText("VERSION \"\"\n"), kDone);
        EXPECT_EQ(Info().canFd, flag);
    }
}

TEST_F(DatabaseInformation, AReadThatCannotOpenItsFileClearsAllTheSame) {
    Set(2, 1);
    ASSERT_EQ(ReadFile(TempPath("missing")), (Outcome{false, TABRIN_STATUS_NOT_OPENED}));
    EXPECT_EQ(Info().protocolType, 0U);
    EXPECT_EQ(Info().canFd, 1U);
}

TEST_F(DatabaseInformation, ClearingAnEmptyDatabaseIsDone) {
    EXPECT_TRUE(Library().ClearData());
    EXPECT_TRUE(Library().ClearData());
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
}

TEST_F(DatabaseInformation, ClearingRemovesTheMessages) {
    ASSERT_EQ(ReadText("BO_ 1 Good: 8 N\n SG_ S : 0|8@1+ (1,0) [0|1] \"\" N\nBO_ 2 Next: 8 N\n"), kDone);
    ASSERT_EQ(NumMessages(), 2U);
    EXPECT_TRUE(Library().ClearData());
    EXPECT_EQ(Library().GetNumCanMessages(), 0);
}

TEST_F(DatabaseInformation, ClearingRemovesTheErrors) {
    ASSERT_EQ(ReadText("BO_ x Bad: 8 N\nBO_ 2 Next: 8 N\n"), kDone);
    ASSERT_EQ(NumErrors(), 1U);
    EXPECT_TRUE(Library().ClearData());
    EXPECT_EQ(Library().GetNumCanErrors(), 0);
}

}  // namespace
}  // namespace tabrin_test
