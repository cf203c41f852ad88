// Numbers read and print the same whatever the host program made of the locale.
#include <clocale>

#include "abi/interface_test.h"
#include "locale/decimal_comma.h"

namespace tabrin_test {
namespace {

class Locale : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        if (!UseAnyLocaleWithDecimalComma()) {
            GTEST_SKIP() << kNoDecimalComma;
        }
    }
    void TearDown() override { InterfaceTest::TearDown(); }

private:
    LocaleScope scope_;
};

constexpr std::string_view kFile =
    "BO_ 1 M: 8 N\n"
    " SG_ S : 0|8@1+ (0.125,-1234567.5) [-1.5e3|2.5] \"\" N\n"
    " SG_ T : 8|8@1+ (1,5,0) [0|1] \"\" N\n";

TEST_F(Locale, DoesNotChangeHowNumbersAreRead) {
    ASSERT_EQ(ReadText(kFile), kDone);
    ASSERT_EQ(NumSignals(0), 2U);
    const CanSignalData data = SignalAt(0, 0);
    EXPECT_EQ(data.factor, 0.125);
    EXPECT_EQ(data.offset, -1234567.5);
    EXPECT_EQ(data.minimum, -1500.0);
    EXPECT_EQ(data.maximum, 2.5);
    // A comma separates and is no decimal comma.
    EXPECT_EQ(SignalAt(0, 1).factor, 1.0);
}

TEST_F(Locale, DoesNotChangeHowNumbersAreWritten) {
    ASSERT_TRUE(AppendMessage(2364540158U, "M"));
    CanSignalData record = SignalRecord("S");
    record.factor = 0.125;
    record.offset = -1234567.5;
    record.minimum = -1e-7;
    record.maximum = 1e10;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
    const std::string path = TempPath("out.dbc");
    ASSERT_EQ(WriteFile(path, TABRIN_ORDER_DATABASE), kDone);
    const std::string bytes = ReadBytes(path);
    EXPECT_NE(bytes.find("\r\nBO_ 2364540158 M: 8 Kestrune\r\n"
                         " SG_ S : 0|8@1+ (0.125,-1234567.5) [-1e-07|1e+10] \"\" Kestrune\r\n"),
              std::string::npos)
        << bytes;
}

TEST_F(Locale, StaysAsTheHostProgramSetIt) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_EQ(ReadText(kFile), kDone);
    ASSERT_EQ(WriteFile(TempPath("out.dbc"), TABRIN_ORDER_DATABASE), kDone);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    EXPECT_TRUE(HasDecimalComma());
}

// Letters beyond ASCII are letters in some locales, and never in a DBC identifier.
TEST_F(Locale, DoesNotChangeWhatIsALetter) {
    ASSERT_TRUE(AppendMessage(1,
                              "\xC3\x84"
                              "b"));
    EXPECT_EQ(Field(MessageAt(0).identifierName), "_b");
    ASSERT_EQ(ReadText("BO_ 1 A\xE4\xA0"
                       "b: 8 N\n"),
              kDone);
    EXPECT_EQ(Field(MessageAt(0).name), "A__b");
}

TEST_F(Locale, DoesNotChangeWhichPathIsMeant) {
    const std::string path = TempPath("\xC3\xA4.dbc");
    WriteBytes(path, kFile);
    EXPECT_EQ(ReadFile(path), kDone);
    std::filesystem::remove(FilePath(path));
}

}  // namespace
}  // namespace tabrin_test
