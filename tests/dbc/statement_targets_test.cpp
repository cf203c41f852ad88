// Which signals comments, value descriptions and value types reach, and what they leave there: generated files, read by
// the library and by a second, naive reading of the same rules.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/reading.h"
#include "random.h"
#include "shown.h"

namespace tabrin {
namespace {

// --- The naive reading

struct NaiveSignal {
    std::string name;
    uint32_t length = 0;
    std::string comment;
    std::map<long long, std::string> descriptions;
    uint32_t valueType = 0;
};

struct NaiveMessage {
    std::string id;
    std::string comment;
    std::vector<NaiveSignal> signals;
};

constexpr std::string_view kSixBlanks = " \f\n\r\t\v";

std::string WithoutOuterBlanks(const std::string& text) {
    const size_t first = text.find_first_not_of(kSixBlanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kSixBlanks) - first + 1);
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '"' && !escaped.ends_with('\\')) {
            escaped += '\\';
        }
        escaped += c;
    }
    return escaped;
}

// The text split at its quotes: always one piece more than there are quotes.
std::vector<std::string> QuotePieces(const std::string& text) {
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == '"') {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

// A decimal number at the beginning, behind blanks, if it has no more than 32 bits.
bool NaiveNumber(const std::string& text, long long& value) {
    try {
        value = std::stoll(text);
    } catch (const std::logic_error&) {  // none, or too large even for this
        return false;
    }
    return value >= -2147483648LL && value <= 2147483647LL;
}

enum class Kind { MessageComment, SignalComment, Descriptions, Type };

// A statement as it is put together: what is in front of the identifier does not matter to its meaning.
struct Statement {
    Kind kind;
    std::string head;
    std::string id;
    std::string tail;
};

class NaiveDatabase {
public:
    void Message(const std::string& id) { messages_.push_back({id, "", {}}); }

    void Signal(const std::string& name, uint32_t length) {
        messages_.back().signals.push_back({name, length, "", {}, 0});
    }

    void Read(const Statement& statement) {
        switch (statement.kind) {
            case Kind::MessageComment:
            case Kind::SignalComment:
                Comment(statement);
                break;
            case Kind::Descriptions:
                Describe(statement);
                break;
            case Kind::Type:
                SetType(statement);
                break;
        }
    }

    [[nodiscard]] const std::vector<NaiveMessage>& Messages() const { return messages_; }

private:
    template <typename Use>
    void ForEachSignal(const std::string& id, Use use) {
        for (NaiveMessage& message : messages_) {
            if (message.id == id) {
                for (NaiveSignal& signal : message.signals) {
                    use(signal);
                }
            }
        }
    }

    void Comment(const Statement& statement) {
        const size_t quote = statement.tail.find('"');
        const size_t lastQuote = statement.tail.rfind('"');
        if (quote == lastQuote) {
            return;
        }
        const std::string name = WithoutOuterBlanks(statement.tail.substr(0, quote));
        const std::string text = statement.tail.substr(quote + 1, lastQuote - quote - 1);
        for (NaiveMessage& message : messages_) {
            if (statement.kind == Kind::MessageComment && message.id == statement.id && name.empty()) {
                message.comment = Escaped(message.comment + text);
            }
        }
        ForEachSignal(statement.id, [&](NaiveSignal& signal) {
            if (statement.kind == Kind::SignalComment && signal.name == name) {
                signal.comment = Escaped(signal.comment + text);
            }
        });
    }

    // Whether the name stands in front of the rest, with a blank behind it, and what is behind.
    static bool TakeName(const std::string& name, std::string& rest) {
        rest.erase(0, rest.find_first_not_of(kSixBlanks));
        const bool found = rest.size() > name.size() && rest.starts_with(name) &&
                           kSixBlanks.find(rest[name.size()]) != std::string_view::npos;
        rest.erase(0, found ? name.size() : 0);
        return found;
    }

    void Describe(const Statement& statement) {
        ForEachSignal(statement.id, [&](NaiveSignal& signal) {
            std::string rest = statement.tail;
            if (!TakeName(signal.name, rest)) {
                return;
            }
            const std::vector<std::string> pieces = QuotePieces(rest);
            const size_t quotes = pieces.size() - 1;
            size_t i = 0;
            while (i < quotes) {
                long long value = 0;
                if (!NaiveNumber(pieces[i], value)) {
                    ++i;
                    continue;
                }
                const std::string text = i + 1 < quotes ? pieces[i + 1] : "";
                const auto [entry, isNew] = signal.descriptions.try_emplace(value, text);
                if (!isNew) {
                    entry->second += " - " + text;
                }
                i += 2;
            }
        });
    }

    void SetType(const Statement& statement) {
        ForEachSignal(statement.id, [&](NaiveSignal& signal) {
            std::string rest = statement.tail;
            if (!TakeName(signal.name, rest)) {
                return;
            }
            rest = WithoutOuterBlanks(rest);
            const size_t semicolon = rest.find(';');
            long long code = 0;
            if (!rest.starts_with(':') || semicolon == std::string::npos ||
                !NaiveNumber(rest.substr(1, semicolon - 1), code)) {
                return;
            }
            if (code == 1 && signal.length == 32) {
                signal.valueType = 2;
            } else if (code == 2 && signal.length == 64) {
                signal.valueType = 3;
            }
        });
    }

    std::vector<NaiveMessage> messages_;
};

// --- The files

constexpr std::string_view kIdentifiers[] = {"1", "2", "10", "4294967295"};

// Parts of each other, alike but for their blanks or their case, continued by what could be a value, and none at all.
constexpr std::string_view kNames[] = {"",    "A",     "A B", "A  B", "A\tB",  "A\nB", "AB",    "a",
                                       "A 1", "A 1 2", "B",   "1",    "A \f1", "A :",  "A\v B", "_"};

constexpr std::string_view kTexts[] = {"", "text", "5", "-7", " 3 ", "a\nb", "x;y", "back\\", "A", "1 2", ": 1;"};

constexpr std::string_view kValues[] = {"0",           "1",           "-1",         "7",   "+2",         "1.5",
                                        "0x10",        "abc",         "",           "12a", "2147483647", "2147483648",
                                        "-2147483648", "-2147483649", "99999999999"};

constexpr std::string_view kCodes[] = {": 1;", ": 2;",  ":1;",   ": 0;",   ": 3;",   " : 1 ;", ": 1",    "1;",
                                       ": ;",  ": 12;", ": +1;", ": 02x;", ": : 1;", "",       ": 1; 2;"};

class FileMaker {
public:
    explicit FileMaker(uint32_t seed) : random_(seed) {
        const size_t blocks = 1 + random_.Below(12);
        for (size_t i = 0; i < blocks; ++i) {
            AddMessages();
            AddStatements();
        }
    }

    [[nodiscard]] const std::string& Text() const { return text_; }
    [[nodiscard]] const NaiveDatabase& Expected() const { return expected_; }

private:
    void AddMessages() {
        for (size_t count = 1 + random_.Below(3); count > 0; --count) {
            const std::string id = random_.From(kIdentifiers);
            expected_.Message(id);
            text_ += std::string("BO_ ") + id + " Msg: 8 X\n";
            for (size_t signals = random_.Below(7); signals > 0; --signals) {
                AddSignal();
            }
        }
    }

    void AddSignal() {
        std::string name = random_.From(kNames);
        if (name.find(':') != std::string::npos) {
            name = "A";  // a name ends at its first colon
        }
        const uint32_t length = random_.OneIn(3) ? 64 : random_.OneIn(3) ? 16 : 32;
        expected_.Signal(name, length);
        text_ += std::string(" SG_ ") + (name.empty() ? "M" : name) + " : 0|" + std::to_string(length) +
                 "@1+ (1,0) [0|1] \"\" X\n";
    }

    void AddStatements() {
        for (size_t count = random_.Below(12); count > 0; --count) {
            Statement statement = AnyStatement();
            // A carriage return in front of a line feed would be part of the line end, and go.
            for (std::string* text : {&statement.head, &statement.tail}) {
                for (size_t end = text->find("\r\n"); end != std::string::npos; end = text->find("\r\n")) {
                    text->erase(end, 1);
                }
            }
            expected_.Read(statement);
            // On a line of its own, because a comment passes over the keyword in front of its first semicolon.
            text_ += statement.head + statement.id + statement.tail + "\n";
        }
    }

    Statement AnyStatement() {
        const std::string zero = random_.OneIn(8) ? "0" : "";
        const std::string id = random_.From(kIdentifiers);
        switch (random_.Below(4)) {
            case 0:
                return {Kind::MessageComment, Keywords("CM_", "BO_") + zero, id, MessageCommentTail()};
            case 1:
                return {Kind::SignalComment, Keywords("CM_", "SG_") + zero, id, SignalCommentTail()};
            case 2:
                return {Kind::Descriptions, Keywords("VAL_") + zero, id, DescriptionsTail()};
            default:
                return {Kind::Type, Keywords("SIG_VALTYPE_") + zero, id, TypeTail()};
        }
    }

    std::string Blanks(uint32_t least) {
        std::string blanks;
        for (size_t count = random_.OneIn(4) ? least + random_.Below(4) : 1; count > 0; --count) {
            blanks += random_.OneIn(4) ? kSixBlanks[random_.Below(6)] : ' ';
        }
        return blanks;
    }

    // Each with blanks behind it.
    template <typename... Keyword>
    std::string Keywords(Keyword... keywords) {
        std::string text;
        ((text.append(keywords).append(Blanks(1))), ...);
        return text;
    }

    std::string QuotedText() {
        std::string text = random_.From(kTexts);
        if (random_.OneIn(4)) {
            text += "\"" + random_.From(kTexts);
        }
        return "\"" + text + (random_.OneIn(10) ? "" : "\"");
    }

    std::string MessageCommentTail() {
        return Blanks(1) + (random_.OneIn(6) ? random_.From(kNames) : "") + Blanks(0) + QuotedText() + ";";
    }

    std::string SignalCommentTail() { return Blanks(1) + random_.From(kNames) + Blanks(0) + QuotedText() + ";"; }

    std::string DescriptionsTail() {
        std::string tail = Blanks(1) + random_.From(kNames) + Blanks(0);
        for (size_t count = random_.Below(5); count > 0; --count) {
            tail += random_.From(kValues) + Blanks(0) + "\"" + random_.From(kTexts);
            tail += (random_.OneIn(12) ? "" : "\"") + Blanks(0);
        }
        return tail + (random_.OneIn(5) ? "" : ";");
    }

    std::string TypeTail() { return Blanks(1) + random_.From(kNames) + Blanks(0) + random_.From(kCodes); }

    Random random_;
    std::string text_;
    NaiveDatabase expected_;
};

// --- The comparison

void ExpectSame(const CANSignal& signal, const NaiveSignal& expected) {
    ASSERT_EQ(signal.nameAsRead, expected.name);
    EXPECT_EQ(signal.comment, expected.comment);
    EXPECT_EQ(signal.valueType, expected.valueType);
    std::map<long long, std::string> descriptions;
    for (size_t i = 0; i < signal.valueDescriptions.Size(); ++i) {
        const auto [value, text] = signal.valueDescriptions.At(i);
        descriptions[value] = text;
    }
    EXPECT_EQ(descriptions, expected.descriptions);
}

void ExpectSame(const CANDatabase& database, const NaiveDatabase& expected) {
    EXPECT_TRUE(database.errors.empty());
    ASSERT_EQ(database.messages.size(), expected.Messages().size());
    for (size_t i = 0; i < database.messages.size(); ++i) {
        const CANMessage& message = *database.messages[i];
        const NaiveMessage& expectedMessage = expected.Messages()[i];
        EXPECT_EQ(message.comment, expectedMessage.comment);
        ASSERT_EQ(message.signals.size(), expectedMessage.signals.size());
        for (size_t j = 0; j < message.signals.size(); ++j) {
            ExpectSame(*message.signals[j], expectedMessage.signals[j]);
        }
    }
}

TEST(StatementTargets, AreThoseOfTheNaiveReading) {
    // How much the files bring about: a generator gone astray would compare nothing with nothing.
    size_t comments = 0;
    size_t descriptions = 0;
    size_t floats = 0;
    for (uint32_t seed = 0; seed < 400; ++seed) {
        const FileMaker file(seed);
        CANDatabase database;
        ASSERT_TRUE(ReadText(database, file.Text()));
        ExpectSame(database, file.Expected());
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", " << Shown(file.Text());
        for (const auto& message : database.messages) {
            comments += message->comment.IsEmpty() ? 0 : 1;
            for (const auto& signal : message->signals) {
                comments += signal->comment.IsEmpty() ? 0 : 1;
                descriptions += signal->valueDescriptions.Size();
                floats += signal->IsFloat() ? 1 : 0;
            }
        }
    }
    EXPECT_GT(comments, 1000U);
    EXPECT_GT(descriptions, 1000U);
    EXPECT_GT(floats, 100U);
}

}  // namespace
}  // namespace tabrin
