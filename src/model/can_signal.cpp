#include "model/can_signal.h"

#include <string_view>

#include "io/identifier.h"
#include "io/text_scan.h"
#include "io/text_utf8.h"
#include "model/comment_text.h"
#include "model/object_name.h"
#include "model/record_text.h"

namespace tabrin {

namespace {

constexpr size_t kSuffixLength = 5;
constexpr uint32_t kMostSuffixes = 10000;

std::string UniqueSuffix(uint32_t index) {
    std::string suffix = "_0000";
    const std::string digits = std::to_string(index);
    return suffix.replace(kSuffixLength - digits.size(), digits.size(), digits);
}

}  // namespace

void CANSignal::Reset() {
    invalid = true;
    for (std::string* text : {&identifierName, &name, &unit, &unitAsWritten, &comment, &nameAsRead}) {
        text->clear();
    }
    multiplexKind = TABRIN_MULTIPLEX_NONE;
    multiplexValue = startBit = length = 0;
    byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    valueType = TABRIN_VALUE_UNSIGNED;
    factor = offset = minimum = maximum = 0.0;
    receivers.Clear();
    valueDescriptions.Clear();
    startValue = inactiveValue = 0;
    suffixApplied = false;
}

bool CANSignal::SetFromRecord(const CanSignalData* record) {
    Reset();
    if (record == nullptr) {
        return false;
    }
    if (!SetTextsFromRecord(*record)) {
        Reset();
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
    std::string text;
    if (!TakeField(text, record.name)) {
        return false;
    }
    SetName(text, name, identifierName);
    if (!TakeField(unitAsWritten, record.unit)) {
        return false;
    }
    unit = AsciiFold(unitAsWritten);
    if (!TakeField(text, record.receivers)) {
        return false;
    }
    receivers.Assign(text);
    return SetCommentFromBuffer(comment, record.comment);
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
           FillField(record.unit, unit) && FillField(record.unitAsWritten, unitAsWritten) &&
           FillField(record.receivers, receivers.Joined()) && FillField(record.comment, comment);
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
    const auto& [value, text] = valueDescriptions.At(index);
    if (!FillField(record->text, text)) {
        return false;
    }
    record->value = value;
    return true;
}

bool CANSignal::ApplyUniqueSuffix(uint32_t index) {
    if (index >= kMostSuffixes || invalid) {
        return false;
    }
    size_t keep = UnsuffixedName().size();
    if (keep + kSuffixLength > kLongestIdentifier) {
        keep = kLongestIdentifier - kSuffixLength;
    }
    identifierName.replace(keep, std::string::npos, UniqueSuffix(index));
    suffixApplied = true;
    return true;
}

std::string_view CANSignal::UnsuffixedName() const {
    std::string_view unsuffixed = identifierName;
    if (suffixApplied) {
        unsuffixed.remove_suffix(kSuffixLength);
    }
    return unsuffixed;
}

void CANSignal::SetLongName(std::string_view text) {
    name = text;
    NormaliseBlanks(name);
}

}  // namespace tabrin
