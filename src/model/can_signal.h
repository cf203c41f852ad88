// One signal of a message.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "io/line_text.h"
#include "io/prefetch.h"
#include "model/arena.h"
#include "model/parse_errors.h"
#include "model/receiver_list.h"
#include "model/value_descriptions.h"
#include "tabrin.h"

namespace tabrin {

// Its texts are views into the arena that it is made for, which must outlive it: a name that is an identifier is there
// once and not three times. All that it has stands there or in itself, so that nobody needs to destroy it.
class CANSignal {
public:
    static constexpr size_t kSuffixLength = 5;

    explicit CANSignal(Arena& arena) : valueDescriptions(arena) {}
    virtual ~CANSignal() = default;
    CANSignal(const CANSignal&) = delete;
    CANSignal& operator=(const CANSignal&) = delete;
    CANSignal(CANSignal&&) = delete;
    CANSignal& operator=(CANSignal&&) = delete;

    // Back to the values below, but for parseErrors.
    void Reset();

    // The SG_ statement. Parsing resets first; a failure leaves its code in parseErrors.
    bool ParseLine(std::string_view line);
    void AppendDefinitionLine(LineText& line) const;
    [[nodiscard]] std::string WriteDefinitionLine() const;

    // The SIG_VALTYPE_ and VAL_ statements. They decline a line that names another message or signal.
    bool ParseValueTypeLine(std::string_view line, uint32_t messageId);
    void AppendValueTypeLine(LineText& line, uint32_t messageId) const;
    [[nodiscard]] std::string WriteValueTypeLine(uint32_t messageId) const;
    bool ParseValueDescriptionLine(std::string_view line, uint32_t messageId);
    void AppendValueDescriptionLine(LineText& line, uint32_t messageId) const;
    [[nodiscard]] std::string WriteValueDescriptionLine(uint32_t messageId) const;

    // The records of the interface. All fail on a null record.
    bool SetFromRecord(const CanSignalData* record);
    bool GetData(CanSignalData* record) const;
    bool AppendValueDescription(const CanSignalEnumData* record);
    // Number `index` in ascending order of the values; fails beyond the last one too.
    bool GetValueDescription(uint32_t index, CanSignalEnumData* record) const;

    // Tells the identifier name apart from others by a suffix of five characters, "_0007" for 7. A suffix from an
    // earlier time is replaced; where there is no room it takes the place of what follows the 27th character.
    bool ApplyUniqueSuffix(uint32_t index);
    // The identifier name without such a suffix.
    [[nodiscard]] std::string_view UnsuffixedName() const {
        return identifierName.substr(0, identifierName.size() - (suffixApplied ? kSuffixLength : 0));
    }

    [[nodiscard]] bool IsFloat() const { return valueType == TABRIN_VALUE_FLOAT || valueType == TABRIN_VALUE_DOUBLE; }

    void SetUnit(std::string_view text);
    void AppendComment(std::string_view text);

    // For who is about to read a statement of this signal.
    void PrefetchForStatements() const {
        constexpr size_t kSize = 160;  // from the comment to the end, and the name behind
        Prefetch(&comment, kSize);
    }

    [[nodiscard]] Arena& GetArena() const { return valueDescriptions.GetArena(); }

    ParseErrors parseErrors;
    std::string_view unit;           // reduced to ASCII; this form is written
    std::string_view unitAsWritten;  // as it stood in the file
    uint32_t multiplexKind = TABRIN_MULTIPLEX_NONE;
    uint32_t multiplexValue = 0;
    uint32_t startBit = 0;
    uint32_t byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    double factor = 0.0;
    double offset = 0.0;
    double minimum = 0.0;
    double maximum = 0.0;
    ReceiverList receivers;
    std::string_view name;
    std::string_view identifierName;

    // What the statements behind all signals look at and change is together. The name, which the arena has behind the
    // signal, comes next.
    GrowingText comment;         // escaped, see comment_text.h
    uint32_t attributesSet = 0;  // the attributes that have found a value in reading
    uint32_t startValue = 0;
    uint32_t inactiveValue = 0;
    uint32_t length = 0;
    uint32_t valueType = TABRIN_VALUE_UNSIGNED;
    bool invalid = true;  // these two are here only because there is room for them
    bool suffixApplied = false;
    ValueDescriptions valueDescriptions;
    std::string_view nameAsRead;  // other statements of the file find the signal by it

private:
    bool SetTextsFromRecord(const CanSignalData& record);
    [[nodiscard]] bool GetTexts(CanSignalData& record) const;
};

}  // namespace tabrin
