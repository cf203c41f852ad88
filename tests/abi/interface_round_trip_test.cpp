// What was read or built is written, read again and compared field by field; what a file cannot carry is listed.
#include <algorithm>
#include <charconv>
#include <map>
#include <utility>
#include <vector>

#include "abi/corpus.h"
#include "abi/database_copy.h"
#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

// --- What changes on the way through a file -----------------------------------------------------------------------

template <typename Value>
size_t Replace(Value& value, const Value& with) {
    const bool differs = value != with;
    value = with;
    return differs ? 1 : 0;
}

template <size_t Size>
size_t Replace(char (&field)[Size], const std::string& with) {
    const bool differs = Field(field) != with;
    SetField(field, with);
    return differs ? 1 : 0;
}

template <typename Change>
size_t InMessages(Messages& messages, Change change) {
    size_t changed = 0;
    for (MessageCopy& message : messages) {
        changed += change(message.data);
    }
    return changed;
}

template <typename Change>
size_t InSignals(Messages& messages, Change change) {
    size_t changed = 0;
    for (MessageCopy& message : messages) {
        for (SignalCopy& signal : message.signals) {
            changed += change(signal);
        }
    }
    return changed;
}

size_t DropSendTypes(Messages& messages) {
    return InMessages(messages, [](CanMessageData& data) { return Replace(data.sendType, ""); });
}

size_t DropCycleTimes(Messages& messages) {
    return InMessages(messages, [](CanMessageData& data) { return Replace(data.cycleTime, 0U); });
}

size_t DropStartValues(Messages& messages) {
    return InSignals(messages, [](SignalCopy& signal) { return Replace(signal.data.startValue, 0U); });
}

size_t DropInactiveValues(Messages& messages) {
    return InSignals(messages, [](SignalCopy& signal) { return Replace(signal.data.inactiveValue, 0U); });
}

size_t FoldUnits(Messages& messages) {
    return InSignals(messages,
                     [](SignalCopy& signal) { return Replace(signal.data.unitAsWritten, Field(signal.data.unit)); });
}

double TenDigits(double number) {
    char text[40];
    const auto written = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 10);
    double read = 0.0;
    std::from_chars(text, written.ptr, read);
    return read;
}

size_t RoundNumbers(Messages& messages) {
    return InSignals(messages, [](SignalCopy& signal) {
        size_t changed = 0;
        for (double CanSignalData::*number :
             {&CanSignalData::factor, &CanSignalData::offset, &CanSignalData::minimum, &CanSignalData::maximum}) {
            changed += Replace(signal.data.*number, TenDigits(signal.data.*number));
        }
        return std::min<size_t>(changed, 1);
    });
}

size_t DropDescriptionsOfFloats(Messages& messages) {
    return InSignals(messages, [](SignalCopy& signal) {
        const bool isFloat =
            signal.data.valueType == TABRIN_VALUE_FLOAT || signal.data.valueType == TABRIN_VALUE_DOUBLE;
        if (!isFloat) {
            return size_t{0};
        }
        signal.data.numValueDescriptions = 0;
        return Replace(signal.descriptions, {});
    });
}

// Names that stand once in their message stay.
size_t NumberEqualNames(Messages& messages) {
    size_t changed = 0;
    for (MessageCopy& message : messages) {
        std::map<std::string, std::vector<SignalCopy*>> byName;
        for (SignalCopy& signal : message.signals) {
            byName[Field(signal.data.identifierName)].push_back(&signal);
        }
        for (const auto& [name, signals] : byName) {
            for (size_t index = 0; signals.size() > 1 && index < signals.size(); ++index) {
                const std::string digits = std::to_string(10000 + index).substr(1);
                changed += Replace(signals[index]->data.identifierName, name.substr(0, 27) + "_" + digits);
            }
        }
    }
    return changed;
}

// The objects that a statement reaches: those of one identifier and, for signals, of one written name.
using Target = std::pair<uint32_t, std::string>;

// Of the long names for one target, the first one written reaches them all.
size_t ShareLongNames(Messages& messages) {
    std::map<Target, std::string> written;
    for (MessageCopy& message : messages) {
        for (SignalCopy& signal : message.signals) {
            const std::string identifierName = Field(signal.data.identifierName);
            if (Field(signal.data.name) != identifierName) {
                written.emplace(Target(message.data.id, identifierName), Field(signal.data.name));
            }
        }
    }
    size_t changed = 0;
    for (MessageCopy& message : messages) {
        for (SignalCopy& signal : message.signals) {
            const auto found = written.find(Target(message.data.id, Field(signal.data.identifierName)));
            changed += found == written.end() ? 0 : Replace(signal.data.name, found->second);
        }
    }
    return changed;
}

// All comments for one target reach all of it.
size_t ShareComments(Messages& messages) {
    std::map<uint32_t, std::string> ofMessages;
    std::map<Target, std::string> ofSignals;
    for (const MessageCopy& message : messages) {
        ofMessages[message.data.id] += Field(message.data.comment);
        for (const SignalCopy& signal : message.signals) {
            ofSignals[Target(message.data.id, Field(signal.data.identifierName))] += Field(signal.data.comment);
        }
    }
    size_t changed = 0;
    for (MessageCopy& message : messages) {
        changed += Replace(message.data.comment, ofMessages[message.data.id]);
        for (SignalCopy& signal : message.signals) {
            const Target target(message.data.id, Field(signal.data.identifierName));
            changed += Replace(signal.data.comment, ofSignals[target]);
        }
    }
    return changed;
}

// In this order, because the targets are those of the written names.
const struct Rule {
    const char* field;
    const char* why;
    size_t (*apply)(Messages&);  // returns the number of messages or signals that it changed
} kRules[] = {
    {"identifierName", "signals of one message that share an identifier are numbered", NumberEqualNames},
    {"long name", "names cut to make room for their numbers can be the same; the first long name reaches them all",
     ShareLongNames},
    {"comment", "of messages that share an identifier each carries the comments of all, and each is written",
     ShareComments},
    {"sendType", "attributes Gen... are read and never written", DropSendTypes},
    {"cycleTime", "attributes Gen... are read and never written", DropCycleTimes},
    {"startValue", "attributes Gen... are read and never written", DropStartValues},
    {"inactiveValue", "attributes Gen... are read and never written", DropInactiveValues},
    {"unitAsWritten", "units are written with one \"_\" for each character beyond ASCII", FoldUnits},
    {"numbers", "factor, offset, minimum and maximum are written with ten digits", RoundNumbers},
    {"descriptions", "value descriptions of floats and doubles are not written", DropDescriptionsOfFloats},
};

// How many messages or signals of a file change in a field; where nothing is listed, nothing does.
struct Exception {
    const char* file;
    const char* field;
    size_t objects;
};

// Counted in the texts of the files.
constexpr Exception kExceptions[] = {
    {"abs.dbc", "cycleTime", 18},  // the default of all is 10
    {"attributes.dbc", "sendType", 2},
    {"attributes.dbc", "cycleTime", 1},  // the default is 0
    {"complete.dbc", "sendType", 4},     // the values are quoted and do not count, the default is "Cyclic"
    {"complete.dbc", "cycleTime", 4},    // the default is 100
    {"complete.dbc", "unitAsWritten", 2},
    {"ex1.dbc", "unitAsWritten", 48},
    {"example.dbc", "sendType", 8},  // the first, "None", where there is no value
    {"example.dbc", "startValue", 1},
    {"foobar.dbc", "cycleTime", 5},         // the default is 100
    {"ford-lincoln.dbc", "sendType", 331},  // the default is "NoMsgSendType"
    {"ford-lincoln.dbc", "cycleTime", 150},
    {"ford-lincoln.dbc", "numbers", 21},
    {"from-sym.dbc", "comment", 6},     // of two messages and of two signals in each
    {"from-sym.dbc", "cycleTime", 13},  // twelve values, one of them for the two messages
    {"from-sym.dbc", "numbers", 4},
    {"gm-lowspeed.dbc", "numbers", 36},
    {"hyundai-canfd.dbc", "unitAsWritten", 1},
    {"hyundai-canfd.dbc", "numbers", 2},
    {"iso11783.dbc", "numbers", 2627},
    {"j1939-small.dbc", "sendType", 2},  // the default is "noMsgSendType"
    // Names of 33 and 34 characters that differ only in the last ones, and eight names that stand twice.
    {"j1939.dbc", "identifierName", 322},
    {"j1939.dbc", "long name", 8},  // two in each of the four messages of kRenumbered that get equal names
    {"j1939.dbc", "numbers", 9},
    {"model3.dbc", "sendType", 148},  // the default is "Cyclic"
    {"model3.dbc", "numbers", 63},
    {"mux-extended.dbc", "sendType", 4},  // the default is "noMsgSendType"
    {"mux-extended.dbc", "startValue", 1},
    {"nmea-pgns.dbc", "numbers", 2},
    {"obd2.dbc", "unitAsWritten", 132},
    {"obd2.dbc", "numbers", 90},
    {"parser-test.dbc", "sendType", 9},   // the default is "Cyclic"
    {"parser-test.dbc", "cycleTime", 9},  // the default is 100
    {"parser-test.dbc", "startValue", 1},
    {"rivian-actuator.dbc", "numbers", 4},
    {"tesla-lone-cr.dbc", "numbers", 3},
    {"thinkcity.dbc", "sendType", 501},  // the default is "Cyclic"
    {"thinkcity.dbc", "numbers", 15},
    {"utf8-unit.dbc", "unitAsWritten", 1},
    {"vehicle.dbc", "startValue", 4},  // two of the seven values are 0, a negative one does not count
    {"vw-mqb.dbc", "numbers", 4},
    {"vw-pq.dbc", "unitAsWritten", 6},
};

size_t Listed(const std::string& file, const std::string& field) {
    for (const Exception& row : kExceptions) {
        if (row.file == file && row.field == field) {
            return row.objects;
        }
    }
    return 0;
}

// What comes back of the messages of a file that are written in an order and read again.
Messages AfterRoundTrip(Messages messages, uint32_t order, const std::string& file) {
    SortAsWritten(messages, order);
    for (const Rule& rule : kRules) {
        EXPECT_EQ(rule.apply(messages), Listed(file, rule.field)) << rule.field << ": " << rule.why;
    }
    return messages;
}

// --- What writing again changes -----------------------------------------------------------------------------------

// Names are cut to 27 characters to make room for their numbers. So the names of two groups in one message can be the
// same when they are written first; writing once more takes them for one group, which also takes in a name of exactly
// these 27 characters. Where they went through a file, the groups have become pairs of equal names.
struct Renumbered {
    const char* file;
    uint32_t message;
    const char* stem;                       // in front of the names below
    std::vector<const char*> first;         // as written, for each signal
    std::vector<const char*> again;         // when written once more
    std::vector<const char*> afterReading;  // when what was written is read and written
};

const Renumbered kRenumbered[] = {
    {"j1939.dbc",
     2163221760,
     "Aftertreatment_1_Outlet_NH3",
     {"", "_Sens", "_Read", "_0000", "_0001", "_0002", "_0003"},
     {"_0000", "_Sens", "_Read", "_0001", "_0002", "_0003", "_0004"},
     {"", "_Sens", "_Read", "_0000", "_0001", "_0002", "_0003"}},
    {"j1939.dbc",
     2163222528,
     "Aftertreatment_2_Outlet_NH3",
     {"", "_Sens", "_Read", "_0000", "_0001", "_0002", "_0003"},
     {"_0000", "_Sens", "_Read", "_0001", "_0002", "_0003", "_0004"},
     {"", "_Sens", "_Read", "_0000", "_0001", "_0002", "_0003"}},
    {"j1939.dbc",
     2164077824,
     "Aftertreatment_2_SCR_Cataly",
     {"_0000", "_0001", "_0002", "_0003", "_0000", "_0001"},
     {"_0000", "_0001", "_0002", "_0003", "_0004", "_0005"},
     {"_0000", "_0000", "_0002", "_0003", "_0001", "_0001"}},
    {"j1939.dbc",
     2164078592,
     "Aftertreatment_2_SCR_Cataly",
     {"_0000", "_0001", "_0000", "_0001"},
     {"_0000", "_0001", "_0002", "_0003"},
     {"_0000", "_0000", "_0001", "_0001"}},
    {"j1939.dbc",
     2164080128,
     "Aftertreatment_1_SCR_Cataly",
     {"_0000", "_0001", "_0000", "_0001"},
     {"_0000", "_0001", "_0002", "_0003"},
     {"_0000", "_0000", "_0001", "_0001"}},
    {"j1939.dbc",
     2164151808,
     "Aftertreatment_1_SCR_Cataly",
     {"_0000", "_0001", "_0002", "_0003", "_0000", "_0001"},
     {"_0000", "_0001", "_0002", "_0003", "_0004", "_0005"},
     {"_0000", "_0000", "_0002", "_0003", "_0001", "_0001"}},
};

// Of two messages that share an identifier each carries the comments of both, so that there is twice as much of them
// every time the file has been read.
struct Doubled {
    const char* file;
    const char* front;
    const char* inFirstFile;
};

constexpr Doubled kDoubled[] = {
    {"from-sym.dbc", "CM_ BO_ 2365573879 \"", "Returns the actual measured power.Returns the actual measured power."},
    {"from-sym.dbc", "CM_ SG_ 2365573879 RealPower_measured \"",
     "Measured real power of master unit.Measured real power."},
    {"from-sym.dbc", "CM_ SG_ 2365573879 ReactivePower_measured \"",
     "Measured reactive power of master unit.Measured reactive power."},
};

// Takes back the doubling in both messages.
void Halve(std::string& bytes, const std::string& file) {
    for (const Doubled& row : kDoubled) {
        const std::string once = std::string(row.front) + row.inFirstFile + "\";\r\n";
        const std::string twice = std::string(row.front) + row.inFirstFile + row.inFirstFile + "\";\r\n";
        size_t found = 0;
        for (size_t at = 0; row.file == file && (at = bytes.find(twice, at)) != std::string::npos; ++found) {
            bytes.replace(at, twice.size(), once);
        }
        EXPECT_EQ(found, row.file == file ? 2U : 0U) << twice;
    }
}

// The row whose message the line belongs to: one of its SG_ lines, or a line with its identifier.
const Renumbered* RowOf(const std::string& line, const std::string& file, const Renumbered* messageBefore) {
    if (line.substr(0, 5) == " SG_ ") {
        return messageBefore;
    }
    for (const Renumbered& row : kRenumbered) {
        if (row.file == file && line.find(" " + std::to_string(row.message) + " ") != std::string::npos) {
            return &row;
        }
    }
    return nullptr;
}

// The lines that stay as they are. What ExpectNames looks at is taken out of those of kRenumbered, and with it the long
// names, which go by these names.
std::vector<std::string> LinesThatStay(const std::string& bytes, const std::string& file) {
    std::vector<std::string> lines;
    const Renumbered* row = nullptr;
    for (size_t start = 0; start < bytes.size();) {
        const size_t end = std::min(bytes.find("\r\n", start), bytes.size());
        std::string line = bytes.substr(start, end - start);
        start = end + 2;
        row = RowOf(line, file, row);
        const size_t stem = row == nullptr ? std::string::npos : line.find(row->stem);
        if (stem != std::string::npos) {
            const bool isLongName = line.substr(0, 4) == "BA_ ";
            line.replace(stem, isLongName ? line.size() : line.find(' ', stem) - stem, "*");
            if (isLongName) {
                continue;
            }
        }
        lines.push_back(line);
    }
    return lines;
}

void ExpectNames(const std::string& file, std::vector<const char*> Renumbered::*names) {
    for (const Renumbered& row : kRenumbered) {
        if (row.file != file) {
            continue;
        }
        std::vector<std::string> expected;
        for (const char* name : row.*names) {
            expected.push_back(std::string(row.stem) + name);
        }
        std::vector<std::string> actual;
        for (const MessageCopy& message : CopyOfMessages()) {
            for (const SignalCopy& signal : message.signals) {
                if (message.data.id == row.message) {
                    actual.push_back(Field(signal.data.identifierName));
                }
            }
        }
        EXPECT_EQ(actual, expected) << row.message;
    }
}

bool IsListed(const std::string& file) {
    return std::any_of(std::begin(kRenumbered), std::end(kRenumbered),
                       [&](const Renumbered& row) { return row.file == file; });
}

bool IsDoubled(const std::string& file) {
    return std::any_of(std::begin(kDoubled), std::end(kDoubled), [&](const Doubled& row) { return row.file == file; });
}

// --- The tests ----------------------------------------------------------------------------------------------------

class CorpusRoundTrip : public CorpusTest {
protected:
    static void ReadAlone(const std::string& path) {
        ForgetDatabase();
        ASSERT_EQ(ReadFile(path), kDone);
    }

    static std::string Written(uint32_t order) {
        const std::string path = TempPath("dbc");
        EXPECT_EQ(WriteFile(path, order), kDone);
        return ReadBytes(path);
    }

    // Reads each file anew for each order.
    template <typename Check>
    void ForEachFile(Check check) {
        for (const std::string& name : names_) {
            for (const uint32_t order : {TABRIN_ORDER_IDENTIFIER, TABRIN_ORDER_NAME, TABRIN_ORDER_DATABASE}) {
                SCOPED_TRACE(testing::Message() << name << " in order " << order);
                ReadAlone(PathOf(name));
                if (NumMessages() == 0) {
                    EXPECT_EQ(WriteFile(TempPath("dbc"), order), (Outcome{false, 2}));
                } else {
                    check(name, order);
                }
                ASSERT_FALSE(HasFailure()) << "the other files are not looked at";
            }
        }
    }
};

TEST_F(CorpusRoundTrip, KeepsAllButWhatIsListed) {
    ForEachFile([](const std::string& name, uint32_t order) {
        const DatabaseInfo info = Info();
        const Messages before = CopyOfMessages();
        Written(order);
        ReadAlone(TempPath("dbc"));
        EXPECT_EQ(NumErrors(), 0U);
        EXPECT_EQ(Info().protocolType, info.protocolType);
        EXPECT_EQ(Info().canFd, info.canFd);
        ExpectSame(CopyOfMessages(), AfterRoundTrip(before, order, name));
    });
}

TEST_F(CorpusRoundTrip, WritingAgainGivesTheSameBytesButForNumbersListed) {
    ForEachFile([](const std::string& name, uint32_t order) {
        const std::string first = Written(order);
        ExpectNames(name, &Renumbered::first);
        const std::string second = Written(order);
        ExpectNames(name, &Renumbered::again);
        EXPECT_EQ(second == first, !IsListed(name));
        EXPECT_TRUE(LinesThatStay(second, name) == LinesThatStay(first, name));
    });
}

TEST_F(CorpusRoundTrip, SecondFileEqualsTheFirstButForWhatIsListed) {
    ForEachFile([](const std::string& name, uint32_t order) {
        const std::string first = Written(order);
        ReadAlone(TempPath("dbc"));
        std::string second = Written(order);
        ExpectNames(name, &Renumbered::afterReading);
        EXPECT_EQ(second == first, !IsListed(name) && !IsDoubled(name));
        Halve(second, name);
        EXPECT_TRUE(LinesThatStay(second, name) == LinesThatStay(first, name));
    });
}

}  // namespace
}  // namespace tabrin_test
