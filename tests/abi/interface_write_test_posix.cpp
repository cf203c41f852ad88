// Writes that fail on the way, which only this kind of system can be made to show.
#include <cstddef>
#include <string>
#include <string_view>

#include "abi/interface_test.h"
#include "file_size_limit_posix.h"

namespace tabrin_test {
namespace {

constexpr Outcome kWriteFailed{false, TABRIN_STATUS_FAILED};
constexpr Outcome kLastWriteLost{true, TABRIN_STATUS_FAILED};  // noticed only in closing

class WriteFailure : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("dbc");
        std::filesystem::remove(path_);
    }

    // Writes while no file of this process may grow beyond a size.
    Outcome WriteLimited(size_t size) const {
        Outcome outcome{};
        bool limited = false;
        {
            const FileSizeLimit limit(size);
            limited = limit.IsSet();
            outcome = WriteFile(path_, TABRIN_ORDER_DATABASE);
        }
        EXPECT_TRUE(limited);
        return outcome;
    }

    std::string path_;
};

TEST_F(WriteFailure, OfAFullDeviceIsNoticedByTheNextLine) {
    ASSERT_TRUE(std::filesystem::is_character_file("/dev/full"));
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_EQ(WriteFile("/dev/full", TABRIN_ORDER_DATABASE), kWriteFailed);
}

// The file was open when the signals were told apart.
TEST_F(WriteFailure, LeavesTheNamesWithTheirSuffixes) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_EQ(WriteFile("/dev/full", TABRIN_ORDER_DATABASE), kWriteFailed);
    EXPECT_EQ(Field(SignalAt(0, 0).identifierName), "S_0000");
    EXPECT_EQ(Field(SignalAt(0, 1).identifierName), "S_0001");
    EXPECT_EQ(Field(SignalAt(0, 0).name), "S");
}

TEST_F(WriteFailure, IsForgottenByTheNextWrite) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_EQ(WriteFile("/dev/full", TABRIN_ORDER_DATABASE), kWriteFailed);
    EXPECT_EQ(WriteFile(path_, TABRIN_ORDER_DATABASE), kDone);
}

TEST_F(WriteFailure, NeedsNoCell) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_FALSE(Library().WriteDbcFile("/dev/full", 10, TABRIN_ORDER_DATABASE, nullptr));
}

void AppendFloat(std::string_view name) {
    CanSignalData record = SignalRecord(name);
    record.length = 32;
    record.valueType = TABRIN_VALUE_FLOAT;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
}

void AppendComment() {
    CanMessageData record = MessageRecord(1, "M");
    SetField(record.comment, "text");
    ASSERT_TRUE(Library().AppendCanMessage(&record));
}

struct LastWrite {
    const char* what;
    void (*append)();
    std::string_view text;  // of the last write
    Outcome lost;           // what the write returns where this is cut off
};

// The attributes are looked at also when there are none, so that a failure in front of them does not wait for closing.
const LastWrite kLastWrites[] = {
    {"empty line behind a message", [] { ASSERT_TRUE(AppendMessage(1, "M")); }, "\r\n", kWriteFailed},
    {"comment", AppendComment, "CM_ BO_ 1 \"text\";\r\n", kWriteFailed},
    // All in one write.
    {"attributes", [] { ASSERT_TRUE(AppendMessage(1, "Two words")); },
     "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
     "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
     "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"Two words\";\r\n",
     kLastWriteLost},
    {"value description",
     [] {
         ASSERT_TRUE(AppendMessage(1, "M"));
         ASSERT_TRUE(AppendSignal(0, "S"));
         ASSERT_TRUE(AppendEnum(0, 0, 0, "Off"));
     },
     "VAL_ 1 S 0 \"Off\";\r\n", kLastWriteLost},
    {"value type",
     [] {
         ASSERT_TRUE(AppendMessage(1, "M"));
         AppendFloat("S");
     },
     "SIG_VALTYPE_ 1 S : 1;\r\n", kLastWriteLost},
    {"second value type",
     [] {
         ASSERT_TRUE(AppendMessage(1, "M"));
         AppendFloat("S");
         AppendFloat("T");
     },
     "SIG_VALTYPE_ 1 T : 1;\r\n", kLastWriteLost},
};

TEST_F(WriteFailure, OfTheLastWriteIsNoticedOnlyInClosing) {
    for (const LastWrite& row : kLastWrites) {
        SCOPED_TRACE(row.what);
        ASSERT_TRUE(Library().ClearData());
        row.append();
        ASSERT_EQ(WriteFile(path_, TABRIN_ORDER_DATABASE), kDone);
        const std::string whole = ReadBytes(path_);
        ASSERT_GT(whole.size(), row.text.size());
        const size_t front = whole.size() - row.text.size();
        ASSERT_EQ(whole.substr(front), row.text);
        const struct {
            size_t limit;
            Outcome outcome;
        } limits[] = {
            {0, kWriteFailed},     {front / 2, kWriteFailed},    {front - 1, kWriteFailed}, {front, row.lost},
            {front + 1, row.lost}, {whole.size() - 1, row.lost}, {whole.size(), kDone},
        };
        for (const auto& [limit, outcome] : limits) {
            std::filesystem::remove(path_);
            EXPECT_EQ(WriteLimited(limit), outcome) << "limit " << limit << " of " << whole.size();
            EXPECT_EQ(ReadBytes(path_), whole.substr(0, limit)) << "limit " << limit;
        }
    }
}

}  // namespace
}  // namespace tabrin_test
