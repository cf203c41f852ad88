#include "fuzz/abi/snapshot.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/check.h"
#include "fuzz/naive_text.h"

namespace tabrin_fuzz {

namespace {

// Where the text fields and the numbers of a record lie. What neither covers must never be touched.
struct Span {
    size_t offset;
    size_t size;
};

struct Layout {
    std::vector<Span> texts;
    std::vector<Span> numbers;
};

const Layout& LayoutOf(const CanMessageData* /*record*/) {
    static const Layout layout = {{{4, 33}, {44, 256}, {300, 33}, {344, 256}, {600, 33}},
                                  {{0, 4}, {40, 4}, {336, 4}, {636, 4}}};
    return layout;
}

const Layout& LayoutOf(const CanSignalData* /*record*/) {
    static const Layout layout = {{{0, 33}, {33, 256}, {289, 33}, {322, 256}, {578, 256}, {908, 33}},
                                  {{836, 24}, {864, 32}, {896, 12}}};
    return layout;
}

const Layout& LayoutOf(const CanSignalEnumData* /*record*/) {
    static const Layout layout = {{{4, 256}}, {{0, 4}}};
    return layout;
}

const Layout& LayoutOf(const CanErrorData* /*record*/) {
    static const Layout layout = {{{8, 256}}, {{0, 4}, {4, 4}}};
    return layout;
}

// The bytes of the record that a getter filled, with zeros elsewhere; requires that elsewhere nothing has changed.
std::vector<unsigned char> FilledBytes(const unsigned char* bytes, size_t size, const Layout& layout,
                                       unsigned char pattern) {
    std::vector<unsigned char> filled(size);
    std::vector<unsigned char> expected(size, pattern);
    const auto take = [&](Span span) {
        std::memcpy(filled.data() + span.offset, bytes + span.offset, span.size);
        std::memcpy(expected.data() + span.offset, bytes + span.offset, span.size);
    };
    for (const Span number : layout.numbers) {
        take(number);
    }
    for (const Span text : layout.texts) {
        const auto* begin = reinterpret_cast<const char*>(bytes) + text.offset;
        const void* end = std::memchr(begin, '\0', text.size);
        Require(end != nullptr, "a text without NUL");
        const auto length = static_cast<size_t>(static_cast<const char*>(end) - begin);
        Require(NaiveIsUtf8({begin, length}), "a text that is not UTF-8");
        take({text.offset, length + 1});
    }
    Require(std::memcmp(expected.data(), bytes, size) == 0, "a byte changed that no text and no number covers");
    return filled;
}

// Twice, with different bytes in the record before: otherwise a changed byte could be the one that was there.
template <typename Record, typename Get>
Record Fetch(Get get) {
    std::vector<unsigned char> filled[2];
    const unsigned char patterns[] = {0xA5, 0x5A};
    for (size_t i = 0; i < 2; ++i) {
        Record record;
        std::memset(&record, patterns[i], sizeof record);
        Require(get(&record), "a getter refuses an index below the count");
        unsigned char bytes[sizeof record];
        std::memcpy(bytes, &record, sizeof record);
        filled[i] = FilledBytes(bytes, sizeof record, LayoutOf(&record), patterns[i]);
    }
    Require(filled[0] == filled[1], "a getter gives different answers");
    Record record;
    std::memcpy(&record, filled[0].data(), sizeof record);
    return record;
}

template <typename Record, typename Get>
void RequireRefused(Get get) {
    Record record;
    std::memset(&record, 0xA5, sizeof record);
    Require(!get(&record), "a getter accepts an index that is not below the count");
    unsigned char bytes[sizeof record];
    std::memcpy(bytes, &record, sizeof record);
    for (const unsigned char byte : bytes) {
        Require(byte == 0xA5, "a getter that refuses has changed the record");
    }
}

bool IsIdentifierOrEmpty(std::string_view text) {
    return text.empty() || NaiveIsIdentifier(text);
}

bool HasOnlyEscapedQuotes(std::string_view text) {
    return NaiveEscaped(text) == text;
}

void CheckMessage(const CanMessageData& data) {
    Require(IsIdentifierOrEmpty(data.identifierName), "identifierName of a message is no identifier");
    Require(data.identifierName[0] != '\0' || data.name[0] == '\0', "a message with a name, but without identifier");
    Require(NaiveNormalised(data.name) == data.name, "a blank that breaks lines in the name of a message");
    Require(IsIdentifierOrEmpty(data.transmitter), "transmitter is no identifier");
    Require(IsIdentifierOrEmpty(data.sendType), "sendType is no identifier");
    Require(HasOnlyEscapedQuotes(data.comment), "a bare quote in the comment of a message");
}

void CheckSignal(const CanSignalData& data) {
    Require(IsIdentifierOrEmpty(data.identifierName), "identifierName of a signal is no identifier");
    Require(data.identifierName[0] != '\0' || data.name[0] == '\0', "a signal with a name, but without identifier");
    Require(NaiveNormalised(data.name) == data.name, "a blank that breaks lines in the name of a signal");
    Require(HasOnlyEscapedQuotes(data.comment), "a bare quote in the comment of a signal");
    // The field may end in a cut name, which is an identifier still, or in a comma.
    Require(std::strlen(data.receivers) > 254 || NaiveReceivers(data.receivers) == data.receivers,
            "receivers are not identifiers joined by commas");
    const std::string folded = NaiveFolded(data.unitAsWritten);
    // What was cut off unitAsWritten can still be in the unit, which is shorter.
    Require(std::string_view(data.unit).substr(0, folded.size()) == folded, "unit is not the unit as written, folded");
    Require(std::strlen(data.unitAsWritten) > 28 || data.unit == folded, "unit goes on behind the unit as written");
    Require(data.valueType != TABRIN_VALUE_FLOAT || data.length == 32, "a float that has not 32 bits");
    Require(data.valueType != TABRIN_VALUE_DOUBLE || data.length == 64, "a double that has not 64 bits");
}

constexpr uint32_t kUnwritten = 0xA5A5A5A5U;

SignalCopy CopySignal(const LibraryFunctions& library, uint32_t message, uint32_t signal) {
    SignalCopy copy{FetchSignal(library, message, signal), {}};
    CheckSignal(copy.data);
    uint32_t count = kUnwritten;
    Require(library.GetNumEnumsInCanSignal(message, signal, &count), "no number of value descriptions");
    Require(count == copy.data.numValueDescriptions, "two numbers of value descriptions");
    for (uint32_t index = 0; index < count; ++index) {
        copy.descriptions.push_back(FetchDescription(library, message, signal, index));
        Require(index == 0 || copy.descriptions[index - 1].value < copy.descriptions[index].value,
                "value descriptions do not ascend");
    }
    for (const uint32_t beyond : {count, UINT32_MAX}) {
        RequireRefused<CanSignalEnumData>(
            [&](CanSignalEnumData* record) { return library.GetCanSignalEnumData(message, signal, beyond, record); });
    }
    // Backwards too: the library remembers where it was.
    for (uint32_t index = count; index-- > 0;) {
        const CanSignalEnumData again = FetchDescription(library, message, signal, index);
        Require(std::memcmp(&again, &copy.descriptions[index], sizeof again) == 0,
                "value descriptions depend on the order of asking");
    }
    return copy;
}

MessageCopy CopyMessage(const LibraryFunctions& library, uint32_t message) {
    MessageCopy copy{FetchMessage(library, message), {}};
    CheckMessage(copy.data);
    uint32_t count = kUnwritten;
    Require(library.GetNumCanSignalsInCanMessage(message, &count), "no number of signals");
    Require(count == copy.data.numSignals, "two numbers of signals");
    for (uint32_t signal = 0; signal < count; ++signal) {
        copy.signals.push_back(CopySignal(library, message, signal));
    }
    for (const uint32_t beyond : {count, UINT32_MAX}) {
        RequireRefused<CanSignalData>(
            [&](CanSignalData* record) { return library.GetCanSignalData(message, beyond, record); });
        uint32_t unwritten = kUnwritten;
        Require(!library.GetNumEnumsInCanSignal(message, beyond, &unwritten) && unwritten == kUnwritten,
                "value descriptions of a signal that is not there");
    }
    return copy;
}

std::vector<CanErrorData> CopyErrors(const LibraryFunctions& library) {
    std::vector<CanErrorData> errors;
    const auto count = static_cast<uint32_t>(library.GetNumCanErrors());
    for (uint32_t index = 0; index < count; ++index) {
        errors.push_back(
            Fetch<CanErrorData>([&](CanErrorData* record) { return library.GetErrorData(index, record); }));
        Require(errors.back().code <= TABRIN_ERROR_SIGNAL_RANGE, "an unknown error code");
        Require(std::strlen(errors.back().text) <= 254, "the text of an error is too long");
        Require(index == 0 || errors[index - 1].line <= errors[index].line, "errors are not in the order of the file");
    }
    for (const uint32_t beyond : {count, UINT32_MAX}) {
        RequireRefused<CanErrorData>([&](CanErrorData* record) { return library.GetErrorData(beyond, record); });
    }
    return errors;
}

template <typename Record>
bool SameBytes(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool SameSignal(const SignalCopy& a, const SignalCopy& b) {
    bool same = SameBytes(a.data, b.data) && a.descriptions.size() == b.descriptions.size();
    for (size_t i = 0; same && i < a.descriptions.size(); ++i) {
        same = SameBytes(a.descriptions[i], b.descriptions[i]);
    }
    return same;
}

bool SameMessage(const MessageCopy& a, const MessageCopy& b) {
    bool same = SameBytes(a.data, b.data) && a.signals.size() == b.signals.size();
    for (size_t i = 0; same && i < a.signals.size(); ++i) {
        same = SameSignal(a.signals[i], b.signals[i]);
    }
    return same;
}

}  // namespace

CanMessageData FetchMessage(const LibraryFunctions& library, uint32_t message) {
    return Fetch<CanMessageData>([&](CanMessageData* record) { return library.GetCanMessageData(message, record); });
}

CanSignalData FetchSignal(const LibraryFunctions& library, uint32_t message, uint32_t signal) {
    return Fetch<CanSignalData>(
        [&](CanSignalData* record) { return library.GetCanSignalData(message, signal, record); });
}

CanSignalEnumData FetchDescription(const LibraryFunctions& library, uint32_t message, uint32_t signal, uint32_t index) {
    return Fetch<CanSignalEnumData>(
        [&](CanSignalEnumData* record) { return library.GetCanSignalEnumData(message, signal, index, record); });
}

Snapshot TakeSnapshot(const LibraryFunctions& library) {
    Snapshot snapshot{};
    Require(library.GetDatabaseInfo(&snapshot.info, sizeof snapshot.info), "no database information");
    const auto count = static_cast<uint32_t>(library.GetNumCanMessages());
    for (uint32_t message = 0; message < count; ++message) {
        snapshot.messages.push_back(CopyMessage(library, message));
    }
    for (const uint32_t beyond : {count, UINT32_MAX}) {
        RequireRefused<CanMessageData>(
            [&](CanMessageData* record) { return library.GetCanMessageData(beyond, record); });
        uint32_t unwritten = kUnwritten;
        Require(!library.GetNumCanSignalsInCanMessage(beyond, &unwritten) && unwritten == kUnwritten,
                "signals of a message that is not there");
    }
    snapshot.errors = CopyErrors(library);
    return snapshot;
}

bool SameMessages(const Snapshot& a, const Snapshot& b) {
    bool same = SameBytes(a.info, b.info) && a.messages.size() == b.messages.size();
    for (size_t i = 0; same && i < a.messages.size(); ++i) {
        same = SameMessage(a.messages[i], b.messages[i]);
    }
    return same;
}

}  // namespace tabrin_fuzz
