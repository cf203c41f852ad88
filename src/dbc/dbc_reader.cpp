#include "dbc/dbc_reader.h"

#include <memory>
#include <utility>

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

bool ReadSignal(CANDatabase& database, std::string_view statement, uint32_t line) {
    ArenaScope scope(database.arena);
    auto signal = PlaceInArena<CANSignal>(database.arena);
    if (!signal->ParseLine(statement)) {
        database.RecordErrors(statement, line, signal->parseErrors.Codes());
        return false;
    }
    CANSignal& added = *signal;
    if (database.messages.back()->AddSignal(std::move(signal))) {
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
        if (kind == StatementKind::Message) {
            accepting_ = ReadMessage(database_, statement, line - 1);
        } else if (kind == StatementKind::Signal) {
            accepting_ = accepting && ReadSignal(database_, statement, line - 1);
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

private:
    CANDatabase& database_;
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
