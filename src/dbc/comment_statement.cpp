#include "dbc/comment_statement.h"

#include "io/dbc_keywords.h"
#include "io/text_number.h"
#include "io/text_scan.h"
#include "model/comment_text.h"

namespace tabrin {

namespace {

struct Comment {
    std::string_view target;  // the name between the identifier and the text
    std::string_view text;
};

// Takes the keywords and the identifier; `position` is then the blank behind it.
bool ParseIdentifier(std::string_view statement, std::string_view objectKeyword, uint32_t& id, size_t& position) {
    return KeywordAt(statement, kCommentKeyword, 0, position) &&
           KeywordAt(statement, objectKeyword, position, position) && UnsignedToken(statement, position, id, position);
}

// The text reaches from the first quote to the last, so that quotes inside need no backslash. False also when it is empty:
// there is nothing to add then.
bool ParseComment(std::string_view statement, size_t position, Comment& comment) {
    size_t open = kNpos;
    const std::string_view target = TextUntilChar(statement, position, '"', open);
    if (open == kNpos) {
        return false;
    }
    comment.target = Trimmed(target);
    const size_t close = statement.rfind('"');
    if (close <= open + 1) {
        return false;
    }
    comment.text = statement.substr(open + 1, close - open - 1);
    return true;
}

// CM_ <object> <id>[ <name>] "<comment>"; A message has no name here. The comment goes out as it is kept; a signal whose
// name is empty leaves its two blanks.
std::string FormatComment(const std::string& comment, std::string_view objectKeyword, const std::string* name,
                          uint32_t id) {
    std::string line;
    line.reserve(comment.size() + 64);
    line.append(kCommentKeyword).append(" ").append(objectKeyword).append(" ");
    AppendNumber(line, id);
    if (name != nullptr) {
        line.append(" ").append(*name);
    }
    return line.append(" \"").append(comment).append("\";");
}

}  // namespace

bool ReadMessageComment(CANDatabase& database, std::string_view statement) {
    uint32_t id = 0;
    size_t position = 0;
    if (!ParseIdentifier(statement, kMessageKeyword, id, position)) {
        return false;
    }
    const CANDatabase::Messages& messages = database.FindMessages(id);
    Comment comment;
    if (ParseComment(statement, position, comment) && comment.target.empty()) {
        for (const auto& message : messages) {
            AppendEscaped(message->comment, comment.text);
        }
    }
    return !messages.empty();
}

bool ReadSignalComment(CANDatabase& database, std::string_view statement) {
    uint32_t id = 0;
    size_t position = 0;
    if (!ParseIdentifier(statement, kSignalKeyword, id, position)) {
        return false;
    }
    Comment comment;
    if (ParseComment(statement, position, comment)) {
        database.FindSignalNames(id).ForEachRead(
            comment.target, [&](CANSignal& signal) { AppendEscaped(signal.comment, comment.text); });
    }
    return !database.FindMessages(id).empty();
}

std::string CANMessage::WriteCommentLine() const {
    return comment.empty() ? std::string() : FormatComment(comment, kMessageKeyword, nullptr, id);
}

void WriteCommentsSection(DbcFileStream& stream, const CANDatabase::Messages& messages) {
    for (const auto& message : messages) {
        // A message whose names differ but that has no comment leaves an empty line.
        if (!message->comment.empty() || message->name != message->identifierName) {
            stream.WriteLine(message->WriteCommentLine());
        }
        for (const auto& signal : message->signals) {
            if (!signal->comment.empty()) {
                stream.WriteLine(FormatComment(signal->comment, kSignalKeyword, &signal->identifierName, message->id));
            }
        }
    }
}

}  // namespace tabrin
