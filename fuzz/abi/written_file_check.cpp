#include "fuzz/abi/written_file_check.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

#include "fuzz/check.h"
#include "fuzz/naive_text.h"

namespace tabrin_fuzz {

namespace {

// The words that divide a file into statements.
const std::set<std::string, std::less<>>& Keywords() {
    static const std::set<std::string, std::less<>> keywords = {
        "SG_",          "CM_",           "BO_",        "VAL_",           "BA_",
        "BA_DEF_",      "VERSION",       "NS_",        "SIG_VALTYPE_",   "BU_",
        "BS_",          "EV_",           "NS_DESC_",   "CAT_DEF_",       "CAT_",
        "FILTER",       "BA_DEF_DEF_",   "EV_DATA_",   "SGTYPE_",        "BA_REL_",
        "ENVVAR_DATA_", "SGTYPE_VAL_",   "BA_SGTYPE_", "BA_DEF_SGTYPE_", "VAL_TABLE_",
        "SIG_GROUP_",   "SIG_TYPE_REF_", "BO_TX_BU_",  "BA_DEF_REL_",    "SIGTYPE_VALTYPE_",
        "BU_SG_REL_",   "BU_EV_REL_",    "BU_BO_REL_", "SG_MUL_VAL_",    "BA_DEF_DEF_REL_"};
    return keywords;
}

size_t CountKeywords(const std::vector<std::string>& lines) {
    size_t count = 0;
    for (const std::string& line : lines) {
        for (size_t pos = 0; pos < line.size();) {
            size_t end = pos;
            while (end < line.size() && !NaiveIsBlank(line[end])) {
                ++end;
            }
            count += Keywords().count(std::string_view(line).substr(pos, end - pos));
            pos = end + 1;
        }
    }
    return count;
}

bool IsFloat(const CanSignalData& data) {
    return data.valueType == TABRIN_VALUE_FLOAT || data.valueType == TABRIN_VALUE_DOUBLE;
}

template <typename Record>
bool HasLongName(const Record& data) {
    return std::strcmp(data.name, data.identifierName) != 0;
}

// How many keywords a file of this database holds when no text brings further ones along.
size_t ExpectedKeywords(const Snapshot& database) {
    size_t count = 2 + 28 + 2;  // VERSION and NS_, the symbols, BS_ and BU_
    count += database.info.canFd == 1 ? 2 : 0;
    count += database.info.protocolType == 1 || database.info.protocolType == 2 ? 2 : 0;
    std::set<uint32_t> messageNames;
    std::set<std::pair<uint32_t, std::string>> signalNames;
    for (const MessageCopy& message : database.messages) {
        const uint32_t id = message.data.id;
        count += message.data.comment[0] != '\0' ? 3 : 1;
        if (HasLongName(message.data)) {
            messageNames.insert(id);
        }
        for (const SignalCopy& signal : message.signals) {
            count += signal.data.comment[0] != '\0' ? 3 : 1;
            count += IsFloat(signal.data) ? 1 : signal.descriptions.empty() ? 0 : 1;
            if (HasLongName(signal.data)) {
                signalNames.emplace(id, signal.data.identifierName);
            }
        }
    }
    // A definition with its object, a default, and each value with its object.
    count += messageNames.empty() ? 0 : 3 + 2 * messageNames.size();
    count += signalNames.empty() ? 0 : 3 + 2 * signalNames.size();
    return count;
}

void CheckLineEnds(const std::string& bytes) {
    Require(bytes.ends_with("\r\n"), "a written file does not end in CR LF");
    for (size_t feed = bytes.find('\n'); feed != std::string::npos; feed = bytes.find('\n', feed + 1)) {
        Require(feed != 0 && bytes[feed - 1] == '\r', "a written line without CR");
    }
}

bool AreIdsUnique(const Snapshot& database) {
    std::set<uint32_t> ids;
    for (const MessageCopy& message : database.messages) {
        ids.insert(message.data.id);
    }
    return ids.size() == database.messages.size();
}

bool AreSignalNamesUnique(const MessageCopy& message) {
    std::set<std::string> names;
    for (const SignalCopy& signal : message.signals) {
        names.insert(signal.data.identifierName);
    }
    return names.size() == message.signals.size();
}

// Whether no name has lost, or could lose, anything to a suffix.
bool AreNamesShort(const MessageCopy& message) {
    return std::all_of(message.signals.begin(), message.signals.end(),
                       [](const SignalCopy& signal) { return std::strlen(signal.data.identifierName) <= 27; });
}

bool AreAllSignalNamesUnique(const Snapshot& database) {
    return std::all_of(database.messages.begin(), database.messages.end(), AreSignalNamesUnique);
}

bool IsWritingStable(const Snapshot& database, bool writtenBefore) {
    return std::all_of(database.messages.begin(), database.messages.end(), [&](const MessageCopy& message) {
        return AreNamesShort(message) || (!writtenBefore && AreSignalNamesUnique(message));
    });
}

std::vector<std::string> SortedLines(const std::string& bytes) {
    std::vector<std::string> lines;
    for (size_t pos = 0; pos < bytes.size();) {
        const size_t feed = bytes.find('\n', pos);
        lines.push_back(bytes.substr(pos, feed - pos));
        pos = feed + 1;
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// --- Reading back

// What a number is after being written with ten digits. False when rounding takes it beyond the largest number, which
// cannot be read back.
bool RoundToTenDigits(double& value) {
    if (!std::isfinite(value)) {
        return true;
    }
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", value);
    value = std::strtod(text, nullptr);
    return std::isfinite(value);
}

bool CanReadNumbersBack(const Snapshot& database) {
    for (const MessageCopy& message : database.messages) {
        for (const SignalCopy& signal : message.signals) {
            const CanSignalData& data = signal.data;
            for (double value : {data.factor, data.offset, data.minimum, data.maximum}) {
                if (!RoundToTenDigits(value)) {
                    return false;
                }
            }
        }
    }
    return true;
}

void CheckNumber(double written, double read, const char* what) {
    if (!RoundToTenDigits(written)) {
        return;
    }
    const bool same = std::isnan(written) ? std::isnan(read) : written == read;
    Require(same && (std::isnan(written) || std::signbit(written) == std::signbit(read)), what);
}

// Whether an attribute can carry the text: it has no quotes and nothing but single spaces between its words.
bool CanCarry(std::string_view text) {
    if (text.empty() || text.front() == ' ' || text.back() == ' ' || text.find("  ") != std::string_view::npos) {
        return false;
    }
    return text.find_first_of("\";,\t\n\v\f\r") == std::string_view::npos && NaiveWithoutControls(text) == text;
}

// Whether a name, standing in front of ":", would be taken for a multiplexer.
bool LooksLikeMultiplexer(std::string_view name) {
    if (name == "M") {
        return true;
    }
    return name.size() > 1 && name.front() == 'm' && NaiveIsDigit(name[1]) &&
           name.find_first_not_of("0123456789abcdefABCDEFx", 1) == std::string_view::npos;
}

void CheckLongName(const char* name, const char* identifierName, const char* read, const char* what) {
    // A name that fills its field may go on behind it.
    const bool carried = std::strcmp(name, identifierName) == 0 || (CanCarry(name) && std::strlen(name) < 250);
    Require(!carried || std::strcmp(name, read) == 0, what);
}

// What stays of a comment, for those that reach a file whole.
void CheckComment(const char* written, const char* read, const char* what) {
    if (std::strlen(written) < 250) {
        Require(NaiveWithoutControls(written) == read, what);
    }
}

void CheckBits(const CanSignalData& written, const CanSignalData& read) {
    Require(read.startBit == written.startBit, "the start bit is another one after reading back");
    Require(read.length == written.length, "the length is another one after reading back");
    Require(read.byteOrder == (written.byteOrder != 0 ? 1U : 0U), "the byte order is another one after reading back");
    const uint32_t valueType = IsFloat(written)         ? written.valueType
                               : written.valueType != 0 ? uint32_t{TABRIN_VALUE_SIGNED}
                                                        : uint32_t{TABRIN_VALUE_UNSIGNED};
    Require(read.valueType == valueType, "the value type is another one after reading back");
}

void CheckMultiplexer(const CanSignalData& written, const CanSignalData& read) {
    const bool known = written.multiplexKind <= TABRIN_MULTIPLEX_MULTIPLEXED;
    Require(read.multiplexKind == (known ? written.multiplexKind : 0),
            "another kind of multiplexing after reading back");
    const bool multiplexed = written.multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED;
    Require(read.multiplexValue == (multiplexed ? written.multiplexValue : 0),
            "another multiplexer value after reading back");
}

void CheckRange(const CanSignalData& written, const CanSignalData& read) {
    CheckNumber(written.factor, read.factor, "the factor is another one after reading back");
    CheckNumber(written.offset, read.offset, "the offset is another one after reading back");
    double minimum = written.minimum;
    double maximum = written.maximum;
    if (RoundToTenDigits(minimum) && RoundToTenDigits(maximum) && minimum > maximum) {
        std::swap(minimum, maximum);
    }
    CheckNumber(minimum, read.minimum, "the minimum is another one after reading back");
    CheckNumber(maximum, read.maximum, "the maximum is another one after reading back");
}

void CheckUnitAndReceivers(const CanSignalData& written, const CanSignalData& read) {
    // A quote ends the unit, and what follows becomes receivers; a unit that fills its field may go on behind it.
    const std::string_view unit = written.unit;
    if (unit.find('"') != std::string_view::npos || unit.size() > 30) {
        return;
    }
    Require(NaiveTrimmed(NaiveWithoutControls(unit)) == read.unit, "the unit is another one after reading back");
    const char* receivers = written.receivers[0] != '\0' ? written.receivers : "Kestrune";
    Require(std::strcmp(receivers, read.receivers) == 0, "other receivers after reading back");
}

void CheckDescriptions(const SignalCopy& written, const SignalCopy& read) {
    if (IsFloat(written.data)) {
        Require(read.descriptions.empty(), "value descriptions of a float were written");
        return;
    }
    for (const CanSignalEnumData& description : written.descriptions) {
        // Quotes divide the text, and a statement of many lines can be too long.
        if (std::strpbrk(description.text, "\"\n") != nullptr) {
            return;
        }
    }
    Require(written.descriptions.size() == read.descriptions.size(), "value descriptions were lost");
    for (size_t i = 0; i < written.descriptions.size(); ++i) {
        const CanSignalEnumData& description = written.descriptions[i];
        Require(description.value == read.descriptions[i].value, "another value after reading back");
        Require(
            std::strlen(description.text) > 250 || NaiveWithoutControls(description.text) == read.descriptions[i].text,
            "another value description after reading back");
    }
}

void CheckSignalBack(const SignalCopy& writtenSignal, const SignalCopy& readSignal, bool namesAreUnique) {
    const CanSignalData& written = writtenSignal.data;
    const CanSignalData& read = readSignal.data;
    CheckRange(written, read);
    CheckUnitAndReceivers(written, read);
    if (written.multiplexKind - 1U > 1U && LooksLikeMultiplexer(written.identifierName)) {
        return;
    }
    CheckMultiplexer(written, read);
    Require(std::strcmp(written.identifierName, read.identifierName) == 0, "another signal name after reading back");
    if (!namesAreUnique || written.identifierName[0] == '\0') {
        return;
    }
    CheckBits(written, read);
    CheckDescriptions(writtenSignal, readSignal);
    CheckComment(written.comment, read.comment, "another comment on a signal after reading back");
    CheckLongName(written.name, written.identifierName, read.name, "another long name of a signal after reading back");
    Require(read.startValue == 0 && read.inactiveValue == 0, "an attribute value that is never written was read");
}

void CheckMessageBack(const MessageCopy& written, const MessageCopy& read, bool idsAreUnique) {
    Require(read.data.id == written.data.id, "another identifier after reading back");
    Require(read.data.dlc == written.data.dlc, "another data length after reading back");
    Require(std::strcmp(read.data.identifierName, written.data.identifierName) == 0,
            "another message name after reading back");
    const char* transmitter = written.data.transmitter[0] != '\0' ? written.data.transmitter : "Kestrune";
    Require(std::strcmp(read.data.transmitter, transmitter) == 0, "another transmitter after reading back");
    Require(read.data.sendType[0] == '\0' && read.data.cycleTime == 0,
            "an attribute value that is never written was read");
    if (idsAreUnique) {
        CheckComment(written.data.comment, read.data.comment, "another comment on a message after reading back");
        CheckLongName(written.data.name, written.data.identifierName, read.data.name,
                      "another long name of a message after reading back");
    }
    Require(written.signals.size() == read.signals.size(), "signals were lost");
    const bool namesAreUnique = idsAreUnique && AreSignalNamesUnique(written);
    for (size_t i = 0; i < written.signals.size(); ++i) {
        CheckSignalBack(written.signals[i], read.signals[i], namesAreUnique);
    }
}

// A statement without a name in its message line does not read back, nor does one with a keyword among its words; then
// nothing is promised.
bool CanReadBack(const Snapshot& written, const std::string& bytes) {
    const bool named = std::all_of(written.messages.begin(), written.messages.end(),
                                   [](const MessageCopy& message) { return message.data.identifierName[0] != '\0'; });
    return named && CountKeywords(NaiveLines(bytes)) == ExpectedKeywords(written);
}

void CheckReadingBack(const LibraryFunctions& library, const std::string& path, const std::string& bytes,
                      const Snapshot& written) {
    uint32_t status = 0;
    Require(ReadPath(library, path, status), "a written file cannot be read");
    Require(status == TABRIN_STATUS_CLOSED, "the status behind reading a written file");
    const Snapshot read = TakeSnapshot(library);
    if (!CanReadBack(written, bytes) || !CanReadNumbersBack(written)) {
        return;
    }
    Require(read.errors.empty(), "a written file reads back with errors", [&] { return read.errors[0].text; });
    Require(read.messages.size() == written.messages.size(), "messages were lost");
    const bool idsAreUnique = AreIdsUnique(written);
    for (size_t i = 0; i < written.messages.size(); ++i) {
        CheckMessageBack(written.messages[i], read.messages[i], idsAreUnique);
    }
    const uint32_t protocol = written.info.protocolType <= 2 ? written.info.protocolType : 0;
    Require(read.info.protocolType == protocol, "another protocol type after reading back");
    Require(read.info.canFd == written.info.canFd, "another CAN FD flag after reading back");
}

std::string Written(const LibraryFunctions& library, const std::string& path, uint32_t order) {
    uint32_t status = 99;
    Require(WritePath(library, path, order, status), "a database with messages was not written");
    Require(status == TABRIN_STATUS_CLOSED, "the status behind writing");
    std::string bytes = FileBytes(path);
    CheckLineEnds(bytes);
    return bytes;
}

void CheckWritingNothing(const LibraryFunctions& library, const std::string& path) {
    uint32_t status = 99;
    SetFileBytes(path, "untouched");
    Require(!WritePath(library, path, TABRIN_ORDER_DATABASE, status), "an empty database was written");
    Require(status == TABRIN_STATUS_CLOSED, "the status behind writing an empty database");
    Require(FileBytes(path) == "untouched", "writing an empty database changes the file");
}

}  // namespace

void SetFileBytes(const std::string& path, std::string_view bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    Require(file != nullptr, "cannot make a file for the bytes");
    const size_t count = std::fwrite(bytes.data(), 1, bytes.size(), file);
    Require(std::fclose(file) == 0 && count == bytes.size(), "cannot write the bytes to a file");
}

std::string FileBytes(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    Require(file != nullptr, "cannot open the file that was written");
    std::string bytes;
    char block[16384];
    for (size_t count = 1; count != 0;) {
        count = std::fread(block, 1, sizeof block, file);
        bytes.append(block, count);
    }
    std::fclose(file);
    return bytes;
}

bool ReadPath(const LibraryFunctions& library, const std::string& path, uint32_t& status) {
    return library.ReadDbcFile(path.c_str(), static_cast<uint32_t>(path.size() + 1), &status);
}

bool WritePath(const LibraryFunctions& library, const std::string& path, uint32_t order, uint32_t& status) {
    return library.WriteDbcFile(path.c_str(), static_cast<uint32_t>(path.size() + 1), order, &status);
}

void CheckWriting(const LibraryFunctions& library, const std::string& path, bool writtenBefore) {
    const Snapshot before = TakeSnapshot(library);
    if (before.messages.empty()) {
        CheckWritingNothing(library, path);
        return;
    }
    const std::string byIdentifier = Written(library, path, TABRIN_ORDER_IDENTIFIER);
    const std::string byName = Written(library, path, TABRIN_ORDER_NAME);
    const std::string bytes = Written(library, path, TABRIN_ORDER_DATABASE);
    const Snapshot written = TakeSnapshot(library);
    if (IsWritingStable(before, writtenBefore)) {
        Require(AreIdsUnique(before) == false ||
                    (SortedLines(byIdentifier) == SortedLines(bytes) && SortedLines(byName) == SortedLines(bytes)),
                "the orders do not write the same lines");
        Require(bytes == Written(library, path, TABRIN_ORDER_DATABASE), "writing twice gives different bytes");
        Require(SameMessages(TakeSnapshot(library), written), "writing again changes the database");
        Require(!AreAllSignalNamesUnique(before) || writtenBefore || SameMessages(before, written),
                "writing changes a database whose names are unique");
    }
    CheckReadingBack(library, path, bytes, written);
}

}  // namespace tabrin_fuzz
