#include "dbc/comment_statement.h"

#include "io/dbc_keywords.h"
#include "io/text_number.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

struct Comment {
    std::string_view target;  // the name between the identifier and the text
    std::string_view text;
};

// The text reaches from the first quote to the last, so that quotes inside need no backslash. Without two there is none.
Comment ParseComment(std::string_view statement, size_t position) {
    Comment comment;
    size_t open = kNpos;
    comment.target = Trimmed(TextUntilChar(statement, position, '"', open));
    const size_t close = statement.rfind('"');
    if (open < close) {
        comment.text = statement.substr(open + 1, close - open - 1);
    }
    return comment;
}

// To every message of that identifier; whether there is one.
bool AddMessageComment(CANDatabase& database, uint32_t id, const Comment& comment) {
    const MessagesOfIdentifier messages = database.FindMessages(id);
    if (comment.target.empty() && !comment.text.empty()) {
        for (CANMessage* message : messages) {
            message->AppendComment(comment.text);
        }
    }
    return !messages.empty();
}

// To their signals of that name.
bool AddSignalComment(CANDatabase& database, uint32_t id, const Comment& comment) {
    const SignalNames signals = database.FindSignalNames(id);
    if (!comment.text.empty()) {
        signals.ForEachRead(comment.target, [&](CANSignal& signal) { signal.AppendComment(comment.text); });
    }
    return signals.HasMessage();
}

// CM_ <object> <id>[ <name>] "<comment>"; The comment goes out as it is kept.
void AppendTarget(LineText& line, std::string_view objectKeyword, uint32_t id) {
    line.Append(kCommentKeyword).Append(' ').Append(objectKeyword).Append(' ').AppendNumber(id);
}

void AppendText(LineText& line, std::string_view comment) {
    line.Append(" \"").Append(comment).Append("\";");
}

// A name that is empty leaves its two blanks.
void AppendSignalComment(LineText& line, const SignalOf& entry) {
    AppendTarget(line, kSignalKeyword, entry.message->id);
    line.Append(' ').Append(entry.signal->identifierName);
    AppendText(line, entry.signal->comment.View());
}

}  // namespace

bool ReadComment(CANDatabase& database, std::string_view statement) {
    size_t object = 0;
    size_t position = 0;
    if (!KeywordAt(statement, kCommentKeyword, 0, object)) {
        return false;
    }
    const bool isOfMessage = KeywordAt(statement, kMessageKeyword, object, position);
    if (!isOfMessage && !KeywordAt(statement, kSignalKeyword, object, position)) {
        return false;
    }
    uint32_t id = 0;
    if (!UnsignedToken(statement, position, id, position)) {
        return false;
    }
    const Comment comment = ParseComment(statement, position);
    return isOfMessage ? AddMessageComment(database, id, comment) : AddSignalComment(database, id, comment);
}

void CANMessage::AppendCommentLine(LineText& line) const {
    if (!comment.IsEmpty()) {
        AppendTarget(line, kMessageKeyword, id);
        AppendText(line, comment.View());
    }
}

std::string CANMessage::WriteCommentLine() const {
    LineText line;
    AppendCommentLine(line);
    return std::string(line.View());
}

void WriteCommentsSection(DbcFileStream& stream, const CANDatabase::Messages& messages, const SignalsOf& commented) {
    auto next = commented.begin();
    for (const auto& message : messages) {
        // A message whose names differ but that has no comment leaves an empty line.
        if (!message->comment.IsEmpty() || message->name != message->identifierName) {
            message->AppendCommentLine(stream.StartLine());
            stream.WriteLine();
        }
        for (; next != commented.end() && next->message == message.get(); ++next) {
            AppendSignalComment(stream.StartLine(), *next);
            stream.WriteLine();
        }
    }
}

}  // namespace tabrin
