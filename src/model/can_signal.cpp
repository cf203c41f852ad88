#include "model/can_signal.h"

#include <algorithm>
#include <string_view>

#include "io/identifier.h"
#include "io/text_scan.h"
#include "io/text_utf8.h"
#include "model/comment_text.h"
#include "model/object_name.h"
#include "model/record_text.h"

namespace tabrin {

namespace {

constexpr uint32_t kMostSuffixes = 10000;

std::string UniqueSuffix(uint32_t index) {
    std::string suffix = "_0000";
    const std::string digits = std::to_string(index);
    return suffix.replace(CANSignal::kSuffixLength - digits.size(), digits.size(), digits);
}

}  // namespace

void CANSignal::Reset() {
    invalid = true;
    identifierName = name = unit = unitAsWritten = nameAsRead = {};
    comment.Clear();
    multiplexKind = TABRIN_MULTIPLEX_NONE;
    multiplexValue = startBit = length = 0;
    byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    valueType = TABRIN_VALUE_UNSIGNED;
    factor = offset = minimum = maximum = 0.0;
    receivers.Clear();
    valueDescriptions.Clear();
    startValue = inactiveValue = attributesSet = 0;
    suffixApplied = false;
}

bool CANSignal::SetFromRecord(const CanSignalData* record) {
    Reset();
    if (record == nullptr || !SetTextsFromRecord(*record)) {
        return false;
    }
    multiplexKind = record->multiplexKind;
    multiplexValue = record->multiplexValue;
    startBit = record->startBit;
    length = record->length;
    byteOrder = record->byteOrder;
    valueType = record->valueType;
    // A float of the wrong size degrades to a signed integer.
    if ((valueType == TABRIN_VALUE_FLOAT && length != 32) || (valueType == TABRIN_VALUE_DOUBLE && length != 64)) {
        valueType = TABRIN_VALUE_SIGNED;
    }
    factor = record->factor;
    offset = record->offset;
    minimum = record->minimum;
    maximum = record->maximum;
    startValue = record->startValue;
    inactiveValue = record->inactiveValue;
    nameAsRead = name;
    invalid = false;
    return true;
}

bool CANSignal::SetTextsFromRecord(const CanSignalData& record) {
    std::string givenName;
    std::string givenUnit;
    std::string givenReceivers;
    std::string givenComment;
    if (!TakeField(givenName, record.name) || !TakeField(givenUnit, record.unit) ||
        !TakeField(givenReceivers, record.receivers) || !SetCommentFromBuffer(givenComment, record.comment)) {
        return false;
    }
    SetName(GetArena(), GetArena().Keep(givenName), name, identifierName);
    SetUnit(givenUnit);
    receivers.Assign(GetArena(), givenReceivers);
    comment.Append(GetArena(), givenComment);
    return true;
}

bool CANSignal::GetData(CanSignalData* record) const {
    if (record == nullptr || !GetTexts(*record)) {
        return false;
    }
    record->multiplexKind = multiplexKind;
    record->multiplexValue = multiplexValue;
    record->startBit = startBit;
    record->length = length;
    record->byteOrder = byteOrder;
    record->valueType = valueType;
    record->factor = factor;
    record->offset = offset;
    record->minimum = minimum;
    record->maximum = maximum;
    record->numValueDescriptions = static_cast<uint32_t>(valueDescriptions.Size());
    record->startValue = startValue;
    record->inactiveValue = inactiveValue;
    return !invalid;
}

bool CANSignal::GetTexts(CanSignalData& record) const {
    return FillField(record.identifierName, identifierName) && FillField(record.name, name) &&
           FillShortField(record.unit, unit) && FillShortField(record.unitAsWritten, unitAsWritten) &&
           FillShortField(record.receivers, receivers.Joined()) && FillField(record.comment, comment.View());
}

bool CANSignal::AppendValueDescription(const CanSignalEnumData* record) {
    std::string text;
    if (record == nullptr || !TakeField(text, record->text)) {
        return false;
    }
    valueDescriptions.Add(record->value, text);
    return true;
}

bool CANSignal::GetValueDescription(uint32_t index, CanSignalEnumData* record) const {
    if (record == nullptr || index >= valueDescriptions.Size()) {
        return false;
    }
    const auto [value, text] = valueDescriptions.At(index);
    if (!FillShortField(record->text, text)) {
        return false;
    }
    record->value = value;
    return true;
}

bool CANSignal::ApplyUniqueSuffix(uint32_t index) {
    if (index >= kMostSuffixes || invalid) {
        return false;
    }
    const size_t keep = std::min(UnsuffixedName().size(), kLongestIdentifier - kSuffixLength);
    std::string suffixed = std::string(identifierName.substr(0, keep)) + UniqueSuffix(index);
    // Writing again and again must not fill the arena.
    if (suffixed != identifierName) {
        identifierName = GetArena().Keep(suffixed);
    }
    suffixApplied = true;
    return true;
}

void CANSignal::SetUnit(std::string_view text) {
    unitAsWritten = GetArena().Keep(text);
    unit = IsAscii(text) ? unitAsWritten : GetArena().Keep(AsciiFold(text));
}

void CANSignal::AppendComment(std::string_view text) {
    AppendEscaped(GetArena(), comment, text);
}

}  // namespace tabrin
