// SG_ <name> [M | m<value>] : <start>|<length>@<order><sign> (<factor>,<offset>) [<min>|<max>] "<unit>" <receiver>,...
#include <algorithm>
#include <bit>
#include <string>
#include <utility>

#include "io/dbc_keywords.h"
#include "io/identifier.h"
#include "io/short_text.h"
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
    if (behind.find_first_not_of("0123456789abcdefABCDEFx \t") != kNpos || !ToU32(behind, signal.multiplexValue)) {
        return text.size();
    }
    signal.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED;
    return mark;
}

// "M" or "m<value>" and nothing else.
bool ParseSimpleMultiplexer(CANSignal& signal, std::string_view token) {
    if (token == "M") {
        signal.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR;
        return true;
    }
    uint64_t value = 0;
    std::string_view digits = token.substr(1);
    const size_t count = TakeDigits(digits, value);
    if (token.front() != 'm' || count == 0 || count > kSafeDigits || !digits.empty()) {
        return false;
    }
    signal.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED;
    signal.multiplexValue = static_cast<uint32_t>(value);
    return true;
}

// What stands in front of the colon in most statements: "Name", "Name M" or "Name m3", the name an identifier. One that
// begins with an "m" is no such case, because it may be a multiplexer, and the name be empty.
bool ParseSimpleName(CANSignal& signal, std::string_view line, size_t position, size_t& colon) {
    const std::string_view front = line.substr(position, kLongestShortText);
    const ShortText text(front);
    const auto size = static_cast<size_t>(std::countr_zero(
        text.Marks([](const ByteBlock& block) { return block.Equal(':'); }) | ~EveryMark(front.size())));
    const uint64_t inTokens = text.Marks(MarkIdentifierChars) & EveryMark(size);
    const uint64_t spaces = text.Marks([](const ByteBlock& block) { return block.Equal(' '); });
    if (size == front.size() || inTokens == 0 || (inTokens | (spaces & EveryMark(size))) != EveryMark(size)) {
        return false;
    }
    const std::string_view name = FirstMarkedRun(front, inTokens);
    if (IsDigit(name.front()) || name.front() == 'm' || name.front() == 'M') {
        return false;
    }
    const auto endOf = [&](std::string_view token) {
        return static_cast<size_t>(token.data() + token.size() - front.data());
    };
    const uint64_t behind = inTokens & ~EveryMark(endOf(name));
    if (behind != 0) {
        const std::string_view multiplexer = FirstMarkedRun(front, behind);
        const bool isLast = (behind & ~EveryMark(endOf(multiplexer))) == 0;
        if (!isLast || !ParseSimpleMultiplexer(signal, multiplexer)) {
            return false;
        }
    }
    signal.nameAsRead = signal.name = signal.identifierName = signal.GetArena().Keep(name);
    colon = position + size;
    return true;
}

// The name may come out empty: a signal named just M reads as a multiplexor without a name.
bool ParseAnyName(CANSignal& signal, std::string_view line, size_t position, size_t& colon) {
    const std::string_view text = TextUntilChar(line, position, ':', colon);
    if (text.empty()) {
        return false;
    }
    const std::string_view name = Trimmed(text.substr(0, ParseMultiplexer(signal, text)));
    signal.nameAsRead = signal.GetArena().Keep(name);
    SetName(signal.GetArena(), signal.nameAsRead, signal.name, signal.identifierName);
    return true;
}

bool ParseName(CANSignal& signal, std::string_view line, size_t& position) {
    size_t colon = kNpos;
    if (!ParseSimpleName(signal, line, position, colon) && !ParseAnyName(signal, line, position, colon)) {
        return false;
    }
    position = colon + 1;
    return position != line.size();
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
    if (!U32UntilChar(line, position, '|', signal.startBit, bar)) {
        return false;
    }
    size_t at = kNpos;
    const bool hasLength = U32UntilChar(line, bar + 1, '@', signal.length, at);
    if (at != kNpos) {
        position = at + 1;
        return hasLength && ParseOrderAndSign(signal, line, position);
    }
    // A short form without byte order and sign. It goes on behind as many characters as the length has digits.
    if (!ToU32(line.substr(bar + 1), signal.length)) {
        return false;
    }
    position = bar + 1 + std::to_string(signal.length).size();
    return true;
}

// The next such character at or after `pos`. Usually only blanks are in between.
size_t FindCharNear(std::string_view line, size_t pos, char c) {
    const size_t found = FindNonBlank(line, pos);
    return found != kNpos && line[found] == c ? found : line.find(c, pos);
}

// Two numbers between brackets, such as "(0.5,-40)" or "[0|8031.875]".
bool ParsePair(std::string_view line, size_t& position, const char (&brackets)[4], double& first, double& second) {
    const size_t open = FindCharNear(line, position, brackets[0]);
    if (open == kNpos) {
        return false;
    }
    size_t separator = kNpos;
    size_t close = kNpos;
    if (!DoubleUntilChar(line, open + 1, brackets[1], first, separator) ||
        !DoubleUntilChar(line, separator + 1, brackets[2], second, close)) {
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
    const size_t open = FindCharNear(line, position, '"');
    const size_t close = open == kNpos ? kNpos : line.find('"', open + 1);
    if (close == kNpos) {
        ++position;
        return;
    }
    signal.SetUnit(Trimmed(line.substr(open + 1, close - open - 1)));
    position = close + 1;
}

void AppendMultiplexer(LineText& line, const CANSignal& signal) {
    if (signal.multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXOR) {
        line.Append(" M");
    } else if (signal.multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED) {
        line.Append(" m").AppendNumber(signal.multiplexValue);
    }
}

void AppendBits(LineText& line, const CANSignal& signal) {
    line.AppendNumber(signal.startBit).Append('|').AppendNumber(signal.length).Append('@');
    line.Append(signal.byteOrder != TABRIN_BYTE_ORDER_BIG_ENDIAN ? '1' : '0');
    // Floats and doubles count as signed here.
    line.Append(signal.valueType != TABRIN_VALUE_UNSIGNED ? '-' : '+');
}

}  // namespace

bool CANSignal::ParseLine(std::string_view line) {
    Reset();
    parseErrors.Clear();
    size_t position = 0;
    if (!KeywordAt(line, kSignalKeyword, 0, position)) {
        return false;
    }
    const auto fail = [this](uint32_t code) {
        parseErrors.Add(code);
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
    receivers.Assign(GetArena(), line.substr(std::min(position, line.size())));
    invalid = false;
    return true;
}

void CANSignal::AppendDefinitionLine(LineText& line) const {
    if (invalid) {
        return;
    }
    line.Append(' ').Append(kSignalKeyword).Append(' ').Append(identifierName);
    AppendMultiplexer(line, *this);
    line.Append(" : ");
    AppendBits(line, *this);
    line.Append(" (").AppendNumber(factor).Append(',').AppendNumber(offset);
    line.Append(") [").AppendNumber(minimum).Append('|').AppendNumber(maximum);
    line.Append("] \"").Append(unit).Append("\" ");
    line.Append(receivers.IsEmpty() ? kDefaultNode : receivers.Joined());
}

std::string CANSignal::WriteDefinitionLine() const {
    LineText line;
    AppendDefinitionLine(line);
    return std::string(line.View());
}

}  // namespace tabrin
