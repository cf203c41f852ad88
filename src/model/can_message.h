// One frame definition of the database, with its signals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "io/line_text.h"
#include "io/prefetch.h"
#include "model/arena.h"
#include "model/can_signal.h"
#include "model/parse_errors.h"
#include "tabrin.h"

namespace tabrin {

// Its texts are views into the arena that it is made for, which must outlive it.
class CANMessage {
public:
    static constexpr size_t kMostSignals = 10000;
    static constexpr size_t kUsualSignals = 4;  // at least

    explicit CANMessage(Arena& arena) : arena_(&arena) {}
    virtual ~CANMessage() = default;
    CANMessage(const CANMessage&) = delete;
    CANMessage& operator=(const CANMessage&) = delete;
    CANMessage(CANMessage&&) = delete;
    CANMessage& operator=(CANMessage&&) = delete;

    // Back to the values below, but for parseErrors.
    void Reset();

    // The BO_ statement. Parsing resets first; a failure leaves its code in parseErrors.
    bool ParseLine(std::string_view line);
    void AppendDefinitionLine(LineText& line) const;
    [[nodiscard]] std::string WriteDefinitionLine() const;
    // The CM_ statement of the message itself; empty without a comment.
    void AppendCommentLine(LineText& line) const;
    [[nodiscard]] std::string WriteCommentLine() const;

    // Signals beyond the limit are dropped without a word; false for such a one.
    bool AddSignal(std::shared_ptr<CANSignal> signal);

    // Adds a signal from the caller's record; one beyond the limit is checked and dropped.
    bool AppendSignal(const CanSignalData* record);

    // The records of the interface. Both fail on a null record.
    bool SetFromRecord(const CanMessageData* record);
    bool GetData(CanMessageData* record) const;

    // Tells signals of one identifier name apart by the suffixes _0000, _0001, ... in their order, and whether there
    // were any. The suffixes stay, so that writing again gives the same names, with one exception: names that lost what
    // follows their 27th character can be equal by then, and are numbered anew. A suffixed name is not compared with
    // the names of other signals as they stand: Speed, Speed_0001 and Speed give Speed_0001 twice.
    bool PrepareForWriting();

    // For who goes through all signals.
    void PrefetchSignal(size_t index) const {
        if (index < signals.size()) {
            Prefetch(signals[index].get(), sizeof(CANSignal) + 64);
        }
    }

    void SetSendType(std::string_view text);
    void AppendComment(std::string_view text);

    [[nodiscard]] Arena& GetArena() const { return *arena_; }

    bool invalid = true;
    uint32_t id = 0;  // as written in the file; bit 31 has no meaning here
    std::string_view name;
    std::string_view identifierName;
    std::string_view transmitter;  // empty: none
    std::string_view sendType;
    uint32_t cycleTime = 0;
    GrowingText comment;  // escaped, see comment_text.h
    uint32_t dlc = 0;
    std::vector<std::shared_ptr<CANSignal>> signals;
    std::string_view nameAsRead;
    uint32_t attributesSet = 0;  // the attributes that have found a value in reading
    ParseErrors parseErrors;

private:
    Arena* arena_;
};

}  // namespace tabrin
