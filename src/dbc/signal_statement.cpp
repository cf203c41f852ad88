// SG_ <name> [M | m<value>] : <start>|<length>@<order><sign> (<factor>,<offset>) [<min>|<max>] "<unit>" <receiver>,...
#include <string>
#include <utility>

#include "io/dbc_keywords.h"
#include "io/identifier.h"
#include "io/text_number.h"
#include "io/text_scan.h"
#include "model/can_signal.h"
#include "model/object_name.h"

namespace tabrin {

namespace {

// The last "m" or "M"; 0 also when there is none.
size_t FindMark(std::string_view text) {
    size_t mark = text.size() - 1;
    while (mark > 0 && text[mark] != 'm' && text[mark] != 'M') {
        --mark;
    }
    return mark;
}

// Looks for "M" or "m<value>" behind the name and returns where the name ends. Only the two simple forms exist: with an
// extended one such as m3M the whole text is name. The value is decimal, so that m0x10 is 0.
size_t ParseMultiplexer(CANSignal& signal, std::string_view text) {
    const size_t mark = FindMark(text);
    if (mark == 0 || !IsBlank(text[mark - 1])) {
        return text.size();
    }
    const std::string_view behind = text.substr(mark + 1);
    if (text[mark] == 'M') {
        if (FindNonBlank(behind, 0) != kNpos) {
            return text.size();
        }
        signal.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR;
        return mark;
    }
    uint32_t value = 0;
    if (behind.find_first_not_of("0123456789abcdefABCDEFx \t") != kNpos || !ToU32(behind, value)) {
        return text.size();
    }
    signal.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED;
    signal.multiplexValue = value;
    return mark;
}

// The name may come out empty: a signal named just M reads as a multiplexor without a name.
bool ParseName(CANSignal& signal, std::string_view line, size_t& position) {
    size_t colon = kNpos;
    const std::string_view text = TextUntilChar(line, position, ':', colon);
    if (text.empty() || colon + 1 == line.size()) {
        return false;
    }
    const std::string_view name = Trimmed(text.substr(0, ParseMultiplexer(signal, text)));
    signal.nameAsRead = name;
    SetName(name, signal.name, signal.identifierName);
    position = colon + 1;
    return true;
}

// The first character that is no blank at or after `pos`. One must follow it.
size_t FindInside(std::string_view line, size_t pos) {
    const size_t found = FindNonBlank(line, pos);
    return found != kNpos && found + 1 < line.size() ? found : kNpos;
}

// The part "@<order><sign>". A missing sign means unsigned.
bool ParseOrderAndSign(CANSignal& signal, std::string_view line, size_t& position) {
    const size_t order = FindInside(line, position);
    if (order == kNpos || (line[order] != '0' && line[order] != '1')) {
        return false;
    }
    signal.byteOrder = line[order] == '1' ? TABRIN_BYTE_ORDER_LITTLE_ENDIAN : TABRIN_BYTE_ORDER_BIG_ENDIAN;
    const size_t sign = FindInside(line, order + 1);
    if (sign == kNpos) {
        return false;
    }
    signal.valueType = line[sign] == '-' ? TABRIN_VALUE_SIGNED : TABRIN_VALUE_UNSIGNED;
    position = line[sign] == '-' || line[sign] == '+' ? sign + 1 : sign;
    return true;
}

bool ParseBits(CANSignal& signal, std::string_view line, size_t& position) {
    size_t bar = kNpos;
    const std::string_view start = TextUntilChar(line, position, '|', bar);
    if (start.empty() || bar + 1 == line.size() || !ToU32(start, signal.startBit)) {
        return false;
    }
    size_t at = kNpos;
    const std::string_view length = TextUntilChar(line, bar + 1, '@', at);
    if (at != kNpos) {
        position = at + 1;
        return ToU32(length, signal.length) && ParseOrderAndSign(signal, line, position);
    }
    // A short form without byte order and sign. It goes on behind as many characters as the length has digits.
    if (!ToU32(line.substr(bar + 1), signal.length)) {
        return false;
    }
    position = bar + 1 + std::to_string(signal.length).size();
    return true;
}

// Two numbers between brackets, such as "(0.5,-40)" or "[0|8031.875]".
bool ParsePair(std::string_view line, size_t& position, std::string_view brackets, double& first, double& second) {
    const size_t open = line.find(brackets[0], position);
    if (open == kNpos) {
        return false;
    }
    size_t separator = kNpos;
    if (!ToDouble(TextUntilChar(line, open + 1, brackets[1], separator), first)) {
        return false;
    }
    size_t close = kNpos;
    if (!ToDouble(TextUntilChar(line, separator + 1, brackets[2], close), second)) {
        return false;
    }
    position = close + 1;
    return true;
}

bool ParseRange(CANSignal& signal, std::string_view line, size_t& position) {
    if (!ParsePair(line, position, "[|]", signal.minimum, signal.maximum)) {
        return false;
    }
    if (signal.minimum > signal.maximum) {
        std::swap(signal.minimum, signal.maximum);
    }
    return true;
}

// Without two quotes there is no unit, and the receivers follow one character further on.
void ParseUnit(CANSignal& signal, std::string_view line, size_t& position) {
    const size_t open = line.find('"', position);
    const size_t close = open == kNpos ? kNpos : line.find('"', open + 1);
    if (close == kNpos) {
        ++position;
        return;
    }
    signal.unitAsWritten = Trimmed(line.substr(open + 1, close - open - 1));
    signal.unit = AsciiFold(signal.unitAsWritten);
    position = close + 1;
}

// Long enough for most lines, so that they grow in one piece.
constexpr size_t kUsualLineLength = 128;

void AppendPair(std::string& line, std::string_view brackets, double first, double second) {
    line.append(" ").append(1, brackets[0]);
    AppendNumber(line, first);
    line += brackets[1];
    AppendNumber(line, second);
    line += brackets[2];
}

void AppendBits(std::string& line, const CANSignal& signal) {
    AppendNumber(line, signal.startBit);
    line += '|';
    AppendNumber(line, signal.length);
    line += '@';
    line += signal.byteOrder != TABRIN_BYTE_ORDER_BIG_ENDIAN ? '1' : '0';
    // Floats and doubles count as signed here.
    line += signal.valueType != TABRIN_VALUE_UNSIGNED ? '-' : '+';
}

}  // namespace

bool CANSignal::ParseLine(std::string_view line) {
    Reset();
    parseErrors.clear();
    size_t position = 0;
    if (!KeywordAt(line, kSignalKeyword, 0, position)) {
        return false;
    }
    const auto fail = [this](uint32_t code) {
        parseErrors.push_back(code);
        Reset();
        return false;
    };
    if (!ParseName(*this, line, position)) {
        return fail(TABRIN_ERROR_SIGNAL_NAME);
    }
    if (!ParseBits(*this, line, position)) {
        return fail(TABRIN_ERROR_SIGNAL_BITS);
    }
    if (!ParsePair(line, position, "(,)", factor, offset)) {
        return fail(TABRIN_ERROR_SIGNAL_SCALE);
    }
    if (!ParseRange(*this, line, position)) {
        return fail(TABRIN_ERROR_SIGNAL_RANGE);
    }
    ParseUnit(*this, line, position);
    if (position < line.size()) {
        receivers.Assign(line.substr(position));
    }
    invalid = false;
    return true;
}

std::string CANSignal::WriteDefinitionLine() const {
    std::string line;
    if (invalid) {
        return line;
    }
    line.reserve(kUsualLineLength + receivers.Joined().size());
    line.append(" ").append(kSignalKeyword).append(" ").append(identifierName);
    if (multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXOR) {
        line += " M";
    } else if (multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED) {
        line += " m";
        AppendNumber(line, multiplexValue);
    }
    line += " : ";
    AppendBits(line, *this);
    AppendPair(line, "(,)", factor, offset);
    AppendPair(line, "[|]", minimum, maximum);
    line.append(" \"").append(unit).append("\" ");
    line.append(receivers.IsEmpty() ? kDefaultNode : receivers.Joined());
    return line;
}

}  // namespace tabrin
