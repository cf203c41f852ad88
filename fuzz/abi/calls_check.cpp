#include "fuzz/abi/calls_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <vector>

#include "fuzz/abi/snapshot.h"
#include "fuzz/abi/written_file_check.h"
#include "fuzz/check.h"
#include "fuzz/naive_text.h"

namespace tabrin_fuzz {

namespace {

// The program, byte by byte; zeros behind its end.
class Program {
public:
    explicit Program(std::string_view bytes) : rest_(bytes) {}

    [[nodiscard]] bool IsAtEnd() const { return rest_.empty(); }

    uint8_t Byte() {
        const char byte = rest_.empty() ? '\0' : rest_.front();
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return static_cast<uint8_t>(byte);
    }

    uint32_t Word() {
        uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word = word * 256 + Byte();
        }
        return word;
    }

    // A number near an end of its range more often than not.
    uint32_t Number() {
        const uint8_t choice = Byte();
        if (choice == 0xFF) {
            return Word();
        }
        return choice < 0xE0 ? choice : 0U - (choice & 0x1FU);
    }

    std::string_view Text(size_t most) {
        const std::string_view text = rest_.substr(0, std::min<size_t>(most, Byte()));
        rest_.remove_prefix(std::min(text.size(), rest_.size()));
        return text;
    }

    void Fill(void* target, size_t size) {
        auto* bytes = static_cast<unsigned char*>(target);
        for (size_t i = 0; i < size; ++i) {
            bytes[i] = Byte();
        }
    }

private:
    std::string_view rest_;
};

struct ModelSignal {
    std::map<int32_t, std::string> descriptions;
};

struct ModelMessage {
    std::vector<ModelSignal> signals;
};

class Calls {
public:
    Calls(const LibraryFunctions& library, std::string_view program, const std::string& path)
        : library_(library), program_(program), path_(path) {}

    void Run() {
        const DatabaseInfo none{};
        library_.ClearData();
        library_.SetDatabaseInfo(&none, sizeof none);
        // Calls near the end of a long program would otherwise be reached too slowly.
        for (int count = 0; count < 200 && !program_.IsAtEnd(); ++count) {
            Call();
        }
        CompareCounts();
        CheckWriting(library_, path_, writtenBefore_);
        library_.ClearData();
    }

private:
    void Call() {
        switch (program_.Byte() % 18) {
            case 0:
                return Version();
            case 1:
                return Read();
            case 2:
                return Write();
            case 3:
                return Clear();
            case 4:
                return GetInfo();
            case 5:
                return SetInfo();
            case 6:
                Require(library_.GetNumCanMessages() == static_cast<int64_t>(model_.size()), "the number of messages");
                return;
            case 7:
            case 8:
                return AppendMessage();
            case 9:
            case 10:
                return AppendSignal();
            case 11:
                return AppendDescription();
            case 12:
                return GetMessage();
            case 13:
                return GetSignal();
            case 14:
                return GetDescription();
            case 15:
                return GetError();
            case 16:
                return Counts();
            default:
                return CompareCounts();
        }
    }

    void Version() { Require(library_.GetLibraryVersion() == 1.31F, "the version"); }

    // --- Files

    // The path of the file, or something that cannot be one. It never leads anywhere else: what it is made of comes
    // from outside.
    std::string Path(bool& usable) {
        const uint8_t choice = program_.Byte();
        usable = choice < 0xC0;
        if (usable) {
            return path_;
        }
        std::string odd(program_.Text(255));
        for (char& c : odd) {
            c = std::string_view("/\\.:").find(c) != std::string_view::npos ? 'x' : c;
        }
        return choice < 0xE0 ? odd.substr(0, 0) : path_ + ".missing/" + odd;
    }

    struct FileCall {
        std::unique_ptr<char[]> path;  // exactly as large as is said
        uint32_t size = 0;
        bool usable = false;
        bool wantsStatus = false;
        uint32_t status = 0xA5A5A5A5U;
    };

    FileCall PrepareFileCall() {
        FileCall call;
        const std::string path = Path(call.usable);
        const uint8_t choice = program_.Byte();
        call.wantsStatus = choice % 8 != 0;
        call.size = static_cast<uint32_t>(path.size() + 1);
        if (choice >= 0xF0) {
            call.size = program_.Number();
        } else if (choice >= 0xC0) {
            call.size = std::max<uint32_t>(call.size, 260);
        }
        call.usable = call.usable && call.size > path.size() && call.size <= 260;
        if (choice == 0xFF) {
            call.usable = false;
            return call;
        }
        // More than the library may look at need not be there.
        const size_t allocated = std::min<size_t>(call.size, 261);
        call.path = std::make_unique<char[]>(allocated);
        std::memset(call.path.get(), 'x', allocated);
        std::memcpy(call.path.get(), path.c_str(), std::min(allocated, path.size() + 1));
        if (call.size <= path.size() && allocated != 0) {
            // A path that is cut would name another file; this one is no UTF-8.
            call.path[0] = '\xFF';
        }
        return call;
    }

    void Read() {
        FileCall call = PrepareFileCall();
        if (program_.Byte() % 4 != 0) {
            SetFileBytes(path_, program_.Text(255));
        } else {
            SetFileBytes(path_, "BO_ 1 A: 8 X\r\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" X\r\nVAL_ 1 S 1 \"a\" 2 \"b\" ;\r\n");
        }
        const bool done = library_.ReadDbcFile(call.path.get(), call.size, call.wantsStatus ? &call.status : nullptr);
        Require(done == call.usable, "the result of reading");
        CheckStatus(call, done);
        AdoptDatabase();
        Require(done || (model_.empty() && library_.GetNumCanErrors() == 0), "something was read from no file");
        writtenBefore_ = false;
    }

    void Write() {
        FileCall call = PrepareFileCall();
        const uint32_t order = program_.Number();
        const bool done =
            library_.WriteDbcFile(call.path.get(), call.size, order, call.wantsStatus ? &call.status : nullptr);
        Require(done == (call.usable && !model_.empty()), "the result of writing");
        if (!model_.empty()) {
            CheckStatus(call, done);
            writtenBefore_ = writtenBefore_ || done;
        } else {
            Require(!call.wantsStatus || call.status == TABRIN_STATUS_CLOSED, "the status of writing nothing");
        }
    }

    static void CheckStatus(const FileCall& call, bool done) {
        if (call.wantsStatus) {
            Require(done == (call.status == TABRIN_STATUS_CLOSED), "status and result disagree");
            Require(done || (call.status >= TABRIN_STATUS_PATH_TOO_LONG && call.status <= TABRIN_STATUS_NOT_OPENED),
                    "the status of a file that cannot be opened");
            Require((call.size > 260) == (call.status == TABRIN_STATUS_PATH_TOO_LONG), "the status of a long path");
        }
    }

    void Clear() {
        Require(library_.ClearData(), "clearing failed");
        model_.clear();
        numErrors_ = 0;
        info_.protocolType = 0;
        writtenBefore_ = false;
        CompareCounts();
    }

    // The database as the getters show it becomes the model.
    void AdoptDatabase() {
        const Snapshot snapshot = TakeSnapshot(library_);
        info_ = snapshot.info;
        numErrors_ = snapshot.errors.size();
        model_.clear();
        for (const MessageCopy& message : snapshot.messages) {
            ModelMessage& modelMessage = model_.emplace_back();
            for (const SignalCopy& signal : message.signals) {
                ModelSignal& modelSignal = modelMessage.signals.emplace_back();
                for (const CanSignalEnumData& description : signal.descriptions) {
                    modelSignal.descriptions[description.value] = description.text;
                }
            }
        }
    }

    // --- Database information

    size_t InfoSize() {
        const uint8_t choice = program_.Byte();
        return choice == 0xFF ? SIZE_MAX : choice % 32;
    }

    void GetInfo() {
        const size_t size = InfoSize();
        const size_t copied = std::min<size_t>(size, 8);
        const auto target = std::make_unique<unsigned char[]>(copied);
        Require(library_.GetDatabaseInfo(copied == 0 ? nullptr : target.get(), size), "no database information");
        Require(copied == 0 || std::memcmp(target.get(), &info_, copied) == 0, "the database information");
    }

    void SetInfo() {
        const size_t size = InfoSize();
        const size_t copied = std::min<size_t>(size, 8);
        const auto source = std::make_unique<unsigned char[]>(copied);
        // Small numbers mean something.
        DatabaseInfo info{program_.Number(), program_.Number()};
        std::memcpy(source.get(), &info, copied);
        Require(library_.SetDatabaseInfo(copied == 0 ? nullptr : source.get(), size), "setting information failed");
        std::memcpy(&info_, source.get(), copied);
    }

    // --- Appending

    template <size_t Size>
    void FillText(char (&field)[Size], uint8_t style) {
        const std::string_view text = program_.Text(Size);
        std::copy(text.begin(), text.end(), field);
        if (text.size() < Size && style != 0) {
            field[text.size()] = '\0';
        }
    }

    // A record full of one byte, of bytes of the program, or with texts of it.
    template <typename Record, typename FillTexts>
    std::unique_ptr<Record> MakeRecord(FillTexts fillTexts) {
        const uint8_t style = program_.Byte();
        if (style == 0xFF) {
            return nullptr;
        }
        auto record = std::make_unique<Record>();
        std::memset(record.get(), style % 4 == 0 ? program_.Byte() : 0, sizeof(Record));
        if (style % 16 == 5) {
            program_.Fill(record.get(), sizeof(Record));
        } else {
            fillTexts(*record, style % 8);
        }
        return record;
    }

    template <size_t Size>
    static bool Takes(const char (&field)[Size], std::string& text) {
        return NaiveTakenField(field, Size, text);
    }

    void AppendMessage() {
        const auto record = MakeRecord<CanMessageData>([&](CanMessageData& data, uint8_t style) {
            data.id = program_.Number();
            data.dlc = program_.Byte();
            FillText(data.name, style);
            FillText(data.transmitter, style);
            FillText(data.comment, style);
        });
        std::string name;
        std::string transmitter;
        std::string comment;
        const bool valid = record != nullptr && Takes(record->name, name) && Takes(record->transmitter, transmitter) &&
                           Takes(record->comment, comment);
        Require(library_.AppendCanMessage(record.get()) == valid, "the result of appending a message");
        if (!valid) {
            return;
        }
        model_.emplace_back();
        CompareMessageCount();
        const CanMessageData data = FetchMessage(library_, LastMessage());
        Require(data.id == record->id && data.dlc == record->dlc, "the numbers of an appended message");
        Require(data.numSignals == 0 && data.cycleTime == 0 && data.sendType[0] == '\0', "the rest of a new message");
        Require(NaiveNormalised(name) == data.name, "the name of an appended message");
        Require(NaiveMadeIdentifier(NaiveNormalised(name)) == data.identifierName, "the identifier of a message");
        Require(NaiveMadeIdentifier(transmitter) == data.transmitter, "the transmitter of an appended message");
        CompareCut(NaiveEscaped(comment), data.comment, "the comment of an appended message");
    }

    template <size_t Size>
    static void CompareCut(const std::string& text, const char (&field)[Size], const char* what) {
        size_t length = 0;
        Require(NaiveSafeLength(text, Size, length) && text.substr(0, length) == field, what);
    }

    void AppendSignal() {
        const uint32_t message = MessageIndex();
        const auto record = MakeRecord<CanSignalData>([&](CanSignalData& data, uint8_t style) {
            FillText(data.name, style);
            FillText(data.unit, style);
            FillText(data.receivers, style);
            FillText(data.comment, style);
            data.multiplexKind = program_.Byte() % 4;
            data.multiplexValue = program_.Number();
            data.startBit = program_.Byte();
            data.length = program_.Byte() % 65;
            data.byteOrder = program_.Byte() % 3;
            data.valueType = program_.Byte() % 5;
            program_.Fill(&data.factor, 4 * sizeof(double));
        });
        // The same once more, or a few times, gives signals of one name.
        const int times = 1 + program_.Byte() % 4;
        for (int i = 0; i < times; ++i) {
            AppendSignalRecord(message, record.get());
        }
    }

    void AppendSignalRecord(uint32_t message, const CanSignalData* record) {
        std::string name;
        std::string unit;
        std::string receivers;
        std::string comment;
        const bool valid = message < model_.size() && record != nullptr && Takes(record->name, name) &&
                           Takes(record->unit, unit) && Takes(record->receivers, receivers) &&
                           Takes(record->comment, comment);
        Require(library_.AppendCanSignalToCanMessage(message, record) == valid, "the result of appending a signal");
        if (!valid) {
            return;
        }
        std::vector<ModelSignal>& signals = model_[message].signals;
        signals.emplace_back();
        const CanSignalData data = FetchSignal(library_, message, static_cast<uint32_t>(signals.size() - 1));
        Require(NaiveNormalised(name) == data.name, "the name of an appended signal");
        Require(NaiveMadeIdentifier(NaiveNormalised(name)) == data.identifierName, "the identifier of a signal");
        Require(unit == data.unitAsWritten && NaiveFolded(unit) == data.unit, "the unit of an appended signal");
        CompareCut(NaiveReceivers(receivers), data.receivers, "the receivers of an appended signal");
        CompareCut(NaiveEscaped(comment), data.comment, "the comment of an appended signal");
        CompareSignalNumbers(*record, data);
    }

    static void CompareSignalNumbers(const CanSignalData& given, const CanSignalData& data) {
        const bool wrongSize = (given.valueType == TABRIN_VALUE_FLOAT && given.length != 32) ||
                               (given.valueType == TABRIN_VALUE_DOUBLE && given.length != 64);
        const uint32_t valueType = wrongSize ? uint32_t{TABRIN_VALUE_SIGNED} : given.valueType;
        Require(data.valueType == valueType, "the value type of an appended signal");
        // multiplexKind to byteOrder lie together, as do the four doubles.
        Require(std::memcmp(&given.multiplexKind, &data.multiplexKind, 5 * sizeof(uint32_t)) == 0 &&
                    std::memcmp(&given.factor, &data.factor, 4 * sizeof(double)) == 0,
                "the numbers of an appended signal");
        Require(data.startValue == given.startValue && data.inactiveValue == given.inactiveValue &&
                    data.numValueDescriptions == 0,
                "the values of an appended signal");
    }

    void AppendDescription() {
        const uint32_t message = MessageIndex();
        const uint32_t signal = SignalIndex(message);
        const auto record = MakeRecord<CanSignalEnumData>([&](CanSignalEnumData& data, uint8_t style) {
            data.value = static_cast<int32_t>(program_.Number());
            FillText(data.text, style);
        });
        std::string text;
        const bool valid = HasSignal(message, signal) && record != nullptr && Takes(record->text, text);
        Require(library_.AppendEnumToCanSignal(message, signal, record.get()) == valid,
                "the result of appending a value description");
        if (!valid) {
            return;
        }
        auto& descriptions = model_[message].signals[signal].descriptions;
        const auto [place, isNew] = descriptions.try_emplace(record->value, text);
        if (!isNew) {
            place->second += " - " + text;
        }
        const auto index = static_cast<uint32_t>(std::distance(descriptions.begin(), place));
        const CanSignalEnumData data = FetchDescription(library_, message, signal, index);
        Require(data.value == record->value, "a value description is not where its value belongs");
        // A text that was longer once has lost its end in the model, if that was made by reading.
        Require(place->second.size() > 250 || place->second == data.text, "the text of a value description");
    }

    // --- Asking

    // One that is there, the count, one less or any number.
    uint32_t Index(size_t count) {
        const uint8_t choice = program_.Byte();
        if (choice == 0xFF) {
            return program_.Word();
        }
        return choice < 0xF0 && count != 0 ? static_cast<uint32_t>(choice % count) : static_cast<uint32_t>(count);
    }

    uint32_t MessageIndex() { return Index(model_.size()); }

    uint32_t SignalIndex(uint32_t message) {
        return Index(message < model_.size() ? model_[message].signals.size() : 0);
    }

    bool HasSignal(uint32_t message, uint32_t signal) const {
        return message < model_.size() && signal < model_[message].signals.size();
    }

    void GetMessage() {
        const uint32_t message = MessageIndex();
        CanMessageData data{};
        Require(library_.GetCanMessageData(message, &data) == (message < model_.size()), "the result of a getter");
        Require(!library_.GetCanMessageData(message, nullptr), "a message without a record");
        Require(message >= model_.size() || data.numSignals == model_[message].signals.size(), "numSignals");
    }

    void GetSignal() {
        const uint32_t message = MessageIndex();
        const uint32_t signal = SignalIndex(message);
        CanSignalData data{};
        Require(library_.GetCanSignalData(message, signal, &data) == HasSignal(message, signal), "a signal's getter");
        Require(!library_.GetCanSignalData(message, signal, nullptr), "a signal without a record");
        Require(!HasSignal(message, signal) ||
                    data.numValueDescriptions == model_[message].signals[signal].descriptions.size(),
                "numValueDescriptions");
    }

    void GetDescription() {
        const uint32_t message = MessageIndex();
        const uint32_t signal = SignalIndex(message);
        const bool there = HasSignal(message, signal);
        const size_t count = there ? model_[message].signals[signal].descriptions.size() : 0;
        const uint32_t index = Index(count);
        CanSignalEnumData data{};
        Require(library_.GetCanSignalEnumData(message, signal, index, &data) == (index < count),
                "a value description's getter");
        Require(!library_.GetCanSignalEnumData(message, signal, index, nullptr), "a description without a record");
        if (index < count) {
            const auto entry = std::next(model_[message].signals[signal].descriptions.begin(), index);
            Require(data.value == entry->first, "value descriptions are not in the order of their values");
        }
    }

    void GetError() {
        const uint32_t index = Index(numErrors_);
        CanErrorData data{};
        Require(library_.GetErrorData(index, &data) == (index < numErrors_), "an error's getter");
        Require(!library_.GetErrorData(index, nullptr), "an error without a record");
    }

    void Counts() {
        const uint32_t message = MessageIndex();
        const uint32_t signal = SignalIndex(message);
        uint32_t count = 0xA5A5A5A5U;
        Require(library_.GetNumEnumsInCanSignal(message, signal, &count) == HasSignal(message, signal),
                "the result of counting value descriptions");
        Require(
            count == (HasSignal(message, signal) ? model_[message].signals[signal].descriptions.size() : 0xA5A5A5A5U),
            "the number of value descriptions");
    }

    void CompareCounts() {
        const Snapshot snapshot = TakeSnapshot(library_);
        Require(std::memcmp(&snapshot.info, &info_, sizeof info_) == 0, "the database information changed by itself");
        Require(snapshot.errors.size() == numErrors_, "the number of errors changed by itself");
        Require(snapshot.messages.size() == model_.size(), "the number of messages changed by itself");
        for (size_t i = 0; i < model_.size(); ++i) {
            const std::vector<SignalCopy>& signals = snapshot.messages[i].signals;
            Require(signals.size() == model_[i].signals.size(), "the number of signals changed by itself");
            for (size_t j = 0; j < signals.size(); ++j) {
                Require(signals[j].descriptions.size() == model_[i].signals[j].descriptions.size(),
                        "the number of value descriptions changed by itself");
            }
        }
    }

    void CompareMessageCount() {
        Require(library_.GetNumCanMessages() == static_cast<int64_t>(model_.size()), "the number of messages");
    }

    uint32_t LastMessage() const { return static_cast<uint32_t>(model_.size() - 1); }

    const LibraryFunctions& library_;
    Program program_;
    std::string path_;
    std::vector<ModelMessage> model_;
    DatabaseInfo info_{};
    size_t numErrors_ = 0;
    bool writtenBefore_ = false;
};

}  // namespace

void CheckCalls(const LibraryFunctions& library, std::string_view program, const std::string& path) {
    Calls(library, program, path).Run();
}

}  // namespace tabrin_fuzz
