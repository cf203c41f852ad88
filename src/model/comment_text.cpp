#include "model/comment_text.h"

#include "io/text_scan.h"
#include "io/text_utf8.h"
#include "tabrin.h"

namespace tabrin {

namespace {

// `last` is the character in front of the text.
std::string Escaped(std::string_view text, char last) {
    std::string escaped;
    for (const char c : text) {
        if (c == '"' && last != '\\') {
            escaped += '\\';
        }
        escaped += c;
        last = c;
    }
    return escaped;
}

}  // namespace

void EscapeQuotes(std::string& text) {
    text = Escaped(text, '\0');
}

void AppendEscaped(Arena& arena, GrowingText& comment, std::string_view text) {
    if (text.find('"') == kNpos) {
        comment.Append(arena, text);
        return;
    }
    comment.Append(arena, Escaped(text, comment.IsEmpty() ? '\0' : comment.View().back()));
}

bool SetCommentFromBuffer(std::string& comment, const char* buffer) {
    if (!StringFromBuffer(comment, buffer, sizeof CanMessageData::comment)) {
        return false;
    }
    EscapeQuotes(comment);
    return true;
}

}  // namespace tabrin
