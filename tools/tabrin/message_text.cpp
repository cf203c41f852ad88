#include "message_text.h"

#include <array>
#include <cstdio>
#include <set>

#include "frame_picture.h"
#include "words.h"

namespace tabrin_tool {

namespace {

constexpr std::uint32_t kExtendedFlag = 0x80000000;
constexpr std::size_t kIndent = 2;

std::string IdText(std::uint32_t id) {
    const bool extended = (id & kExtendedFlag) != 0;
    const unsigned long number = id & ~kExtendedFlag;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), extended ? "0x%08lX (%lu, 29 bits)" : "0x%03lX (%lu)", number, number);
    return text.data();
}

std::string HeadText(const CanMessageData& data, const Paint& paint) {
    std::string text = paint.Bold(OneLine(data.name)) + "  " + IdText(data.id) + ", " + Count(data.dlc, "byte") +
                       (data.transmitter[0] != '\0' ? std::string(", from ") + data.transmitter : "");
    if (data.sendType[0] != '\0') {
        text += std::string(", ") + data.sendType;
    }
    if (data.cycleTime != 0) {
        text += ", every " + std::to_string(data.cycleTime) + " ms";
    }
    text += "\n";
    if (std::string_view(data.name) != data.identifierName) {
        text += Indented(kIndent, std::string("in files: ") + data.identifierName);
    }
    return text + Indented(kIndent, CommentText(data.comment));
}

// a, b, ..., z, aa, ab, ...
std::string Key(std::size_t number) {
    constexpr std::size_t kLetters = 26;
    std::string key;
    for (++number; number > 0; number = (number - 1) / kLetters) {
        key.insert(key.begin(), static_cast<char>('a' + (number - 1) % kLetters));
    }
    return key;
}

std::string MultiplexText(const CanSignalData& data) {
    switch (data.multiplexKind) {
        case TABRIN_MULTIPLEX_MULTIPLEXOR:
            return "M";
        case TABRIN_MULTIPLEX_MULTIPLEXED:
            return "m" + std::to_string(data.multiplexValue);
        default:
            return "";
    }
}

// "a, b" for "a,b"
std::string ReceiversText(const char* receivers) {
    std::string text;
    for (const char* c = receivers; *c != '\0'; ++c) {
        text += *c;
        if (*c == ',') {
            text += ' ';
        }
    }
    return OneLine(text);
}

std::string SignalTable(const Message& message, const Paint& paint) {
    Table table;
    table.AddColumn("", Table::Align::Left);
    table.AddColumn("signal", Table::Align::Left);
    table.AddColumn("mux", Table::Align::Left);
    table.AddColumn("start", Table::Align::Right);
    table.AddColumn("bits", Table::Align::Right);
    table.AddColumn("order", Table::Align::Left);
    table.AddColumn("type", Table::Align::Left);
    table.AddColumn("factor", Table::Align::Right);
    table.AddColumn("offset", Table::Align::Right);
    table.AddColumn("minimum", Table::Align::Right);
    table.AddColumn("maximum", Table::Align::Right);
    table.AddColumn("unit", Table::Align::Left);
    table.AddColumn("receivers", Table::Align::Left);
    for (std::size_t i = 0; i < message.signals.size(); ++i) {
        const CanSignalData& data = message.signals[i].data;
        table.AddRow({Key(i), OneLine(data.name), MultiplexText(data), std::to_string(data.startBit),
                      std::to_string(data.length), data.byteOrder == TABRIN_BYTE_ORDER_LITTLE_ENDIAN ? "little" : "big",
                      ValueTypeName(data.valueType), NumberText(data.factor), NumberText(data.offset),
                      NumberText(data.minimum), NumberText(data.maximum), OneLine(data.unitAsWritten),
                      ReceiversText(data.receivers)});
    }
    return message.signals.empty() ? "" : table.Print(kIndent, paint);
}

bool IsMultiplexed(const Signal& signal) {
    return signal.data.multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED;
}

std::vector<FrameSignal> SignalsOfFrame(const Message& message, bool all, std::uint32_t switchValue) {
    std::vector<FrameSignal> signals;
    for (std::size_t i = 0; i < message.signals.size(); ++i) {
        const CanSignalData& data = message.signals[i].data;
        if (all || !IsMultiplexed(message.signals[i]) || data.multiplexValue == switchValue) {
            signals.push_back({Key(i), OneLine(data.name), i, data.startBit, data.length,
                               data.byteOrder == TABRIN_BYTE_ORDER_BIG_ENDIAN});
        }
    }
    return signals;
}

// "Page = 1 (engine)"
std::string SwitchText(const Message& message, std::uint32_t switchValue) {
    for (const Signal& signal : message.signals) {
        if (signal.data.multiplexKind != TABRIN_MULTIPLEX_MULTIPLEXOR) {
            continue;
        }
        std::string text = OneLine(signal.data.name) + " = " + std::to_string(switchValue);
        for (const CanSignalEnumData& value : signal.values) {
            if (static_cast<std::uint32_t>(value.value) == switchValue) {
                text += " (" + OneLine(value.text) + ")";
            }
        }
        return text;
    }
    return "switch = " + std::to_string(switchValue);
}

// One picture, or one for each value of the switch that brings signals of its own.
std::string FramePictures(const Message& message, const Paint& paint) {
    std::set<std::uint32_t> switchValues;
    for (const Signal& signal : message.signals) {
        if (IsMultiplexed(signal)) {
            switchValues.insert(signal.data.multiplexValue);
        }
    }
    if (message.signals.empty()) {
        return "";
    }
    if (switchValues.empty()) {
        return "\n" + DrawFrame(message.data.dlc, SignalsOfFrame(message, true, 0), kIndent, paint);
    }
    std::string text;
    for (const std::uint32_t value : switchValues) {
        text += "\n  " + paint.Bold(SwitchText(message, value)) + "\n" +
                DrawFrame(message.data.dlc, SignalsOfFrame(message, false, value), kIndent, paint);
    }
    return text;
}

std::string ValuesText(const Signal& signal, std::size_t indent) {
    std::size_t width = 0;
    for (const CanSignalEnumData& value : signal.values) {
        width = std::max(width, std::to_string(value.value).size());
    }
    std::string text;
    for (const CanSignalEnumData& value : signal.values) {
        text += std::string(indent, ' ') + PaddedLeft(std::to_string(value.value), width) + "  " + OneLine(value.text) +
                "\n";
    }
    return text;
}

// The attributes that these come from hold signed numbers.
std::string RawValueText(const char* what, std::uint32_t value) {
    return value == 0 ? "" : Indented(2 * kIndent, what + std::to_string(static_cast<std::int32_t>(value)));
}

std::string SignalNotes(const Signal& signal) {
    const CanSignalData& data = signal.data;
    std::string text;
    if (std::string_view(data.name) != data.identifierName) {
        text += Indented(2 * kIndent, std::string("in files: ") + data.identifierName);
    }
    text += Indented(2 * kIndent, CommentText(data.comment));
    text += RawValueText("start value (raw): ", data.startValue);
    text += RawValueText("inactive value (raw): ", data.inactiveValue);
    return text + ValuesText(signal, 2 * kIndent);
}

std::string AllNotes(const Message& message, const Paint& paint) {
    std::string text;
    for (std::size_t i = 0; i < message.signals.size(); ++i) {
        const std::string notes = SignalNotes(message.signals[i]);
        if (!notes.empty()) {
            text += "\n  " + paint.Numbered(i, Key(i)) + " " + OneLine(message.signals[i].data.name) + "\n" + notes;
        }
    }
    return text;
}

}  // namespace

std::string MessageText(const Message& message, const Paint& paint) {
    const std::string table = SignalTable(message, paint);
    return HeadText(message.data, paint) + (table.empty() ? "" : "\n" + table) + FramePictures(message, paint) +
           AllNotes(message, paint);
}

}  // namespace tabrin_tool
