#include "dbc/dbc_reader.h"

#include <memory>
#include <utility>
#include <vector>

#include "dbc/attribute_statements.h"
#include "dbc/comment_statement.h"
#include "dbc/value_statements.h"
#include "dbc/well_known_attributes.h"

namespace tabrin {

namespace {

// Drops what only reading needs, whichever way reading ends.
class ReadingScope {
public:
    explicit ReadingScope(CANDatabase& database) : database_(database) { database_.Clear(); }
    ~ReadingScope() { database_.EndReading(); }
    ReadingScope(const ReadingScope&) = delete;
    ReadingScope& operator=(const ReadingScope&) = delete;
    ReadingScope(ReadingScope&&) = delete;
    ReadingScope& operator=(ReadingScope&&) = delete;

private:
    CANDatabase& database_;
};

bool ReadMessage(CANDatabase& database, std::string_view statement, uint32_t line) {
    ArenaScope scope(database.arena);
    auto message = MakeInArena<CANMessage>(database.arena);
    if (!message->ParseLine(statement)) {
        database.RecordErrors(statement, line, message->parseErrors.Codes());
        return false;
    }
    // Before it is added: where that breaks off in the middle, the database holds it already.
    scope.Keep();
    database.AddParsedMessage(std::move(message));
    return true;
}

// The signals of the message that was read last, until all of them are there. Then it takes them over in a list of just
// that size: each list would otherwise grow several times, which takes longer and leaves room that nothing is put into.
class SignalCollector {
public:
    SignalCollector() = default;
    // Where reading breaks off, the message has what was read until then.
    ~SignalCollector() {
        if (!signals_.empty()) {
            message_->signals = std::move(signals_);
        }
    }
    SignalCollector(const SignalCollector&) = delete;
    SignalCollector& operator=(const SignalCollector&) = delete;
    SignalCollector(SignalCollector&&) = delete;
    SignalCollector& operator=(SignalCollector&&) = delete;

    // Signals beyond the limit are dropped without a word; false for such a one.
    bool Add(CANMessage& message, std::shared_ptr<CANSignal> signal) {
        if (signals_.size() >= CANMessage::kMostSignals) {
            return false;
        }
        message_ = &message;
        signals_.push_back(std::move(signal));
        return true;
    }

    void HandOver() {
        if (!signals_.empty()) {
            message_->signals = signals_;
            signals_.clear();
        }
    }

private:
    CANMessage* message_ = nullptr;
    std::vector<std::shared_ptr<CANSignal>> signals_;
};

bool ReadSignal(CANDatabase& database, SignalCollector& signals, std::string_view statement, uint32_t line) {
    ArenaScope scope(database.arena);
    auto signal = PlaceInArena<CANSignal>(database.arena);
    if (!signal->ParseLine(statement)) {
        database.RecordErrors(statement, line, signal->parseErrors.Codes());
        return false;
    }
    CANSignal& added = *signal;
    if (signals.Add(*database.messages.back(), std::move(signal))) {
        // As above.
        scope.Keep();
        database.identifierIndex.AddSignal(added);
    }
    return true;
}

// Offers each statement to the one reader that understands its keyword.
class StatementReader {
public:
    explicit StatementReader(CANDatabase& database) : database_(database) {}

    // `line` is the number of lines read so far.
    void Read(StatementKind kind, std::string_view statement, uint32_t line) {
        // Signals belong to the message last read, and only as long as nothing else and no faulty one comes between.
        const bool accepting = std::exchange(accepting_, false);
        if (kind != StatementKind::Signal) {
            signals_.HandOver();
        }
        if (kind == StatementKind::Message) {
            accepting_ = ReadMessage(database_, statement, line - 1);
        } else if (kind == StatementKind::Signal) {
            accepting_ = accepting && ReadSignal(database_, signals_, statement, line - 1);
        } else if (kind == StatementKind::Comment) {
            ReadComment(database_, statement);
        } else if (kind == StatementKind::ValueType) {
            ReadValueTypeStatement(database_, statement);
        } else if (kind == StatementKind::ValueDescription) {
            ReadValueDescriptionStatement(database_, statement);
        } else if (kind == StatementKind::Attribute) {
            ParseAttributeStatement(database_.attributes, statement);
        }
    }

    void End() { signals_.HandOver(); }

private:
    CANDatabase& database_;
    SignalCollector signals_;
    bool accepting_ = false;
};

}  // namespace

bool ReadDbcFile(CANDatabase& database, const char* path, uint32_t pathBufferSize, FileStatus& status) {
    const ReadingScope scope(database);
    DbcFileStream stream;
    stream.Open(path, pathBufferSize, OpenMode::Read);
    status = stream.Status();
    if (status != FileStatus::Reading) {
        return false;
    }
    StatementReader reader(database);
    while (stream.NextStatement()) {
        reader.Read(stream.Kind(), stream.Statement(), stream.LineNumber());
    }
    reader.End();
    ApplyWellKnownAttributes(database);
    status = stream.Status();
    stream.Close();
    if (status != FileStatus::EndOfFile) {
        return false;
    }
    status = stream.Status();
    return true;
}

}  // namespace tabrin
