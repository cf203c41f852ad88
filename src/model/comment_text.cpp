#include "model/comment_text.h"

#include <utility>

#include "io/text_utf8.h"
#include "tabrin.h"

namespace tabrin {

void EscapeQuotes(std::string& text) {
    std::string escaped;
    AppendEscaped(escaped, text);
    text = std::move(escaped);
}

void AppendEscaped(std::string& comment, std::string_view text) {
    for (size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"')) {
        comment.append(text, 0, quote);
        if (comment.empty() || comment.back() != '\\') {
            comment += '\\';
        }
        comment += '"';
        text.remove_prefix(quote + 1);
    }
    comment.append(text);
}

bool SetCommentFromBuffer(std::string& comment, const char* buffer) {
    if (!StringFromBuffer(comment, buffer, sizeof CanMessageData::comment)) {
        return false;
    }
    EscapeQuotes(comment);
    return true;
}

}  // namespace tabrin
