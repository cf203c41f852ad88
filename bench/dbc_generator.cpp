#include "dbc_generator.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <string_view>
#include <vector>

namespace tabrin::bench {

namespace {

using Random = std::minstd_rand;

constexpr std::array<std::string_view, 24> kWords = {"Engine", "Speed",   "Torque", "Wheel",   "Front", "Rear",
                                                     "Left",   "Right",   "Status", "Temp",    "Press", "Brake",
                                                     "Pedal",  "Battery", "Volt",   "Current", "Valid", "Counter",
                                                     "Check",  "Request", "Actual", "Limit",   "Gear",  "Lamp"};
constexpr std::array<std::string_view, 8> kUnits = {"", "", "", "km/h", "rpm", "%", "V", "\u00B0C"};
constexpr std::array<std::string_view, 6> kFactors = {"1", "1", "0.1", "0.125", "0.00390625", "0.5"};
constexpr std::array<std::string_view, 5> kOffsets = {"0", "0", "0", "-40", "-1000"};
constexpr std::array<std::string_view, 8> kNodes = {"ECU_Engine", "ECU_Gear", "Gateway",    "Dashboard",
                                                    "Brakes",     "Climate",  "Suspension", "Body_Control"};

template <typename Choices>
std::string_view Pick(Random& random, const Choices& choices) {
    return choices[random() % choices.size()];
}

std::string Name(Random& random, size_t number) {
    std::string name(Pick(random, kWords));
    name.append("_").append(Pick(random, kWords));
    return name.append("_").append(std::to_string(number));
}

std::string Sentence(Random& random, size_t words) {
    std::string text = "The";
    for (size_t i = 0; i < words; ++i) {
        text.append(" ").append(Pick(random, kWords));
    }
    return text + ".";
}

std::string Header() {
    return "VERSION \"\"\n\n\nNS_ : \n\tNS_DESC_\n\tCM_\n\tBA_DEF_\n\tBA_\n\tVAL_\n\tCAT_DEF_\n\tCAT_\n\nBS_:\n\n"
           "BU_: ECU_Engine ECU_Gear Gateway Dashboard Brakes Climate Body_Control\n\n";
}

std::string AttributeDefinitions() {
    return "BA_DEF_  \"BusType\" STRING ;\n"
           "BA_DEF_ BO_  \"GenMsgCycleTime\" INT 0 65535;\n"
           "BA_DEF_ BO_  \"GenMsgSendType\" ENUM  \"Cyclic\",\"Event\",\"IfActive\",\"NoMsgSendType\";\n"
           "BA_DEF_ SG_  \"GenSigStartValue\" INT 0 2147483647;\n"
           "BA_DEF_DEF_  \"BusType\" \"CAN\";\n"
           "BA_DEF_DEF_  \"GenMsgCycleTime\" 0;\n"
           "BA_DEF_DEF_  \"GenMsgSendType\" \"NoMsgSendType\";\n"
           "BA_DEF_DEF_  \"GenSigStartValue\" 0;\n";
}

// The sections of a file grow side by side, message by message.
class UsualMixBuilder {
public:
    [[nodiscard]] size_t Size() const {
        return messages_.size() + comments_.size() + attributes_.size() + values_.size() + types_.size();
    }

    void AddMessage() {
        id_ = std::to_string(random_() % 5 == 0 ? 2147483648U + 4096 * number_ : 256 + number_);
        const std::string name = Name(random_, number_++);
        messages_ += "BO_ " + id_ + " " + name + ": 8 ";
        messages_.append(Pick(random_, kNodes)).append("\n");
        if (random_() % 3 == 0) {
            comments_ += "CM_ BO_ " + id_ + " \"" + Sentence(random_, 8) + "\";\n";
        }
        attributes_ += "BA_ \"GenMsgCycleTime\" BO_ " + id_ + " " + std::to_string(10 * (1 + random_() % 100)) + ";\n";
        attributes_ += "BA_ \"GenMsgSendType\" BO_ " + id_ + " " + std::to_string(random_() % 4) + ";\n";
        const size_t signals = 5 + random_() % 11;
        const bool multiplexed = random_() % 8 == 0;
        for (size_t i = 0; i < signals; ++i) {
            AddSignal(i, multiplexed);
        }
        messages_ += "\n";
    }

    [[nodiscard]] std::string Build() const {
        return Header() + messages_ + "\n" + comments_ + AttributeDefinitions() + attributes_ + values_ + types_;
    }

private:
    void AddSignal(size_t index, bool multiplexed) {
        const std::string name = Name(random_, index);
        const bool isFloat = random_() % 40 == 0;
        messages_ += " SG_ " + name;
        if (multiplexed) {
            messages_ += index == 0 ? " M" : " m" + std::to_string(index / 3);
        }
        // Two statements: in one, compilers would be free to draw the numbers in either order.
        messages_ += " : " + std::to_string(random_() % 57) + "|";
        messages_ += isFloat ? "32" : std::to_string(1 + random_() % 16);
        messages_ += random_() % 3 == 0 ? "@0" : "@1";
        messages_ += random_() % 5 == 0 ? "- (" : "+ (";
        messages_.append(Pick(random_, kFactors)).append(",").append(Pick(random_, kOffsets)).append(") [");
        messages_.append(Pick(random_, kOffsets)).append("|").append(std::to_string(random_() % 65536)).append("] \"");
        messages_.append(Pick(random_, kUnits)).append("\"  ").append(Pick(random_, kNodes));
        if (random_() % 3 == 0) {
            messages_.append(",").append(Pick(random_, kNodes));
        }
        messages_ += "\n";
        AddDetails(name, isFloat);
    }

    void AddDetails(const std::string& name, bool isFloat) {
        if (random_() % 3 == 0) {
            comments_ += "CM_ SG_ " + id_ + " " + name + " \"" + Sentence(random_, 5 + random_() % 8) + "\";\n";
        }
        if (random_() % 4 == 0) {
            values_ += "VAL_ " + id_ + " " + name;
            const size_t count = 2 + random_() % 6;
            for (size_t value = 0; value < count; ++value) {
                values_.append(" ").append(std::to_string(value)).append(" \"");
                values_.append(Pick(random_, kWords)).append("\"");
            }
            values_ += " ;\n";
        }
        if (random_() % 3 == 0) {
            attributes_ +=
                "BA_ \"GenSigStartValue\" SG_ " + id_ + " " + name + " " + std::to_string(random_() % 256) + ";\n";
        }
        if (isFloat) {
            types_ += "SIG_VALTYPE_ " + id_ + " " + name + " : 1;\n";
        }
    }

    Random random_{20240229};
    uint32_t number_ = 0;
    std::string id_;
    std::string messages_;
    std::string comments_;
    std::string attributes_;
    std::string values_;
    std::string types_;
};

std::string Signal(const std::string& name, uint32_t length) {
    return " SG_ " + name + " : 0|" + std::to_string(length) + "@1+ (1,0) [0|255] \"\" Gateway\n";
}

}  // namespace

std::string UsualMix(size_t size) {
    UsualMixBuilder builder;
    while (builder.Size() < size) {
        builder.AddMessage();
    }
    return builder.Build();
}

std::string ManySmallMessages(uint32_t messages) {
    std::string text = Header();
    for (uint32_t i = 0; i < messages; ++i) {
        text += "BO_ " + std::to_string(i) + " Message_" + std::to_string(i) + ": 8 Gateway\n";
        text += Signal("Signal_of_" + std::to_string(i), 8) + "\n";
    }
    return text;
}

std::string OneLargeMessage(uint32_t signals) {
    std::string text = Header() + "BO_ 100 Large: 8 Gateway\n";
    for (uint32_t i = 0; i < signals; ++i) {
        text += Signal("Signal_" + std::to_string(i), 32);
    }
    text += "\n" + AttributeDefinitions();
    for (uint32_t i = 0; i < signals; ++i) {
        const std::string target = " 100 Signal_" + std::to_string(i) + " ";
        text += "CM_ SG_" + target + "\"What it is.\";\n";
        text += "VAL_" + target + "0 \"Off\" 1 \"On\" ;\n";
        text += "SIG_VALTYPE_" + target + ": 1;\n";
        text += "BA_ \"GenSigStartValue\" SG_" + target + std::to_string(i) + ";\n";
    }
    return text;
}

std::string ManyValueDescriptions(uint32_t count, ValueOrder order) {
    std::vector<uint32_t> values(count);
    std::iota(values.begin(), values.end(), 0U);
    if (order == ValueOrder::Descending) {
        std::reverse(values.begin(), values.end());
    } else if (order == ValueOrder::Random) {
        // Not std::shuffle: its outcome differs between standard libraries.
        Random random(7);
        for (size_t i = values.size(); i > 1; --i) {
            std::swap(values[i - 1], values[random() % i]);
        }
    }
    std::string text = Header() + "BO_ 100 Large: 8 Gateway\n" + Signal("Codes", 16) + "\nVAL_ 100 Codes";
    for (const uint32_t value : values) {
        const std::string digits = std::to_string(value);
        text.append(" ").append(digits).append(" \"Code ").append(digits).append("\"");
    }
    return text + " ;\n";
}

std::string SingleLine(size_t size) {
    std::string text = UsualMix(size);
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string NoKeyword(size_t size) {
    Random random(3);
    std::string text;
    while (text.size() < size) {
        text += Sentence(random, 10) + "\n";
    }
    return text;
}

std::string EqualSignalNames(uint32_t signals) {
    std::string text = Header() + "BO_ 100 Large: 8 Gateway\n";
    for (uint32_t i = 0; i < signals; ++i) {
        text += Signal("Speed", 8);
    }
    return text;
}

std::string CommentInPieces(uint32_t statements) {
    std::string text = Header() + "BO_ 100 Large: 8 Gateway\n" + Signal("Speed", 8) + "\n";
    for (uint32_t i = 0; i < statements; ++i) {
        text += "CM_ BO_ 100 \"Piece " + std::to_string(i) + ", \";\n";
    }
    return text;
}

}  // namespace tabrin::bench
