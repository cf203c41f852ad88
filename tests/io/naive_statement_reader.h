// The rules of cutting statements once more, step by step and without any regard to speed: for comparisons with texts
// that nobody has thought of.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tabrin {

struct NaiveKeyword {
    std::string text;
    uint32_t kind;  // 1 where one keyword is tolerated in front of the semicolon
};

inline const std::vector<NaiveKeyword>& NaiveKeywords() {
    static const std::vector<NaiveKeyword> keywords = {
        {"SG_", 0},
        {"CM_", 1},
        {"BO_", 0},
        {"VAL_", 0},
        {"BA_", 1},
        {"BA_DEF_", 1},
        {"SIG_VALTYPE_", 0},
        {"BU_", 0},
        {"BS_", 0},
        {"VERSION", 0},
        {"NS_", 0},
        {"EV_", 0},
        {"NS_DESC_", 0},
        {"CAT_DEF_", 0},
        {"CAT_", 0},
        {"FILTER", 0},
        {"BA_DEF_DEF_", 0},
        {"EV_DATA_", 0},
        {"ENVVAR_DATA_", 0},
        {"SGTYPE_", 0},
        {"SGTYPE_VAL_", 0},
        {"BA_DEF_SGTYPE_", 0},
        {"BA_SGTYPE_", 0},
        {"SIG_TYPE_REF_", 0},
        {"VAL_TABLE_", 0},
        {"SIG_GROUP_", 0},
        {"SIGTYPE_VALTYPE_", 0},
        {"BO_TX_BU_", 0},
        {"BA_DEF_REL_", 0},
        {"BA_REL_", 0},
        {"BA_DEF_DEF_REL_", 0},
        {"BU_SG_REL_", 0},
        {"BU_EV_REL_", 0},
        {"BU_BO_REL_", 0},
        {"SG_MUL_VAL_", 0},
    };
    return keywords;
}

inline bool NaiveKeywordAt(const std::string& text, const std::string& keyword, size_t pos, size_t& start,
                           size_t& end) {
    start = text.find_first_not_of(" \f\n\r\t\v", pos);
    if (start == std::string::npos) {
        return false;
    }
    end = start + keyword.size();
    if (end >= text.size() || std::string(" \f\n\r\t\v").find(text[end]) == std::string::npos) {
        return false;
    }
    return text.substr(start, keyword.size()) == keyword;
}

inline bool NaiveFindKeyword(const std::string& text, size_t pos, size_t& index, size_t& start, size_t& end) {
    const std::vector<NaiveKeyword>& keywords = NaiveKeywords();
    for (;;) {
        for (size_t i = 0; i < keywords.size(); ++i) {
            size_t tokenStart = 0;
            size_t tokenEnd = 0;
            if (NaiveKeywordAt(text, keywords[i].text, pos, tokenStart, tokenEnd)) {
                index = i;
                start = tokenStart;
                end = tokenEnd;
                return true;
            }
        }
        pos = text.find_first_not_of(" \f\n\r\t\v", pos);
        if (pos == std::string::npos) {
            return false;
        }
        pos = text.find_first_of(" \f\n\r\t\v", pos);
        if (pos == std::string::npos) {
            return false;
        }
    }
}

// Takes texts of printable ASCII and blanks, which need no cleaning.
class NaiveStatementReader {
public:
    explicit NaiveStatementReader(const std::string& bytes) {
        std::string line;
        for (size_t i = 0; i < bytes.size(); ++i) {
            if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
                continue;
            }
            if (bytes[i] == '\n') {
                lines_.push_back(line);
                line.clear();
            } else {
                line += bytes[i];
            }
        }
        if (!line.empty()) {
            lines_.push_back(line);
        }
    }

    bool Next() {
        if (status != 0) {
            buffer_.clear();
            return false;
        }
        if (!pending_) {
            do {
                buffer_.clear();
                ReadLine();
                pending_ =
                    !buffer_.empty() && NaiveFindKeyword(buffer_, 0, keywordIndex, statementStart_, scanPosition_);
            } while (!pending_ && status == 0);
            if (!pending_) {
                buffer_.clear();
                return false;
            }
        } else {
            keywordIndex = nextIndex_;
            statementStart_ = nextStart_;
        }
        buffer_.erase(0, statementStart_);
        scanPosition_ -= statementStart_;
        uint32_t found = 0;
        uint32_t needed = 1;
        for (;;) {
            if (NaiveFindKeyword(buffer_, scanPosition_, nextIndex_, nextStart_, scanPosition_)) {
                ++found;
            }
            bool tolerate = false;
            if (NaiveKeywords()[keywordIndex].kind == 1 && found == 1) {
                const size_t last = buffer_.find_last_not_of(" \f\n\r\t\v", nextStart_ - 1);
                tolerate = last == std::string::npos || buffer_[last] != ';';
            }
            if (tolerate) {
                needed = 2;
            } else if (found >= needed) {
                break;
            }
            scanPosition_ = buffer_.size();
            if (buffer_.size() > 4096 || status != 0) {
                break;
            }
            ReadLine();
        }
        if (found == needed) {
            statement = buffer_.substr(0, nextStart_);
        } else {
            statement = buffer_;
            buffer_.clear();
            pending_ = false;
        }
        return true;
    }

    uint32_t status = 0;
    uint32_t lineNumber = 0;
    std::string statement;
    size_t keywordIndex = 0;

private:
    void ReadLine() {
        if (lineNumber == lines_.size()) {
            status = 9;
            return;
        }
        buffer_ += lines_[lineNumber++];
        buffer_ += '\n';
    }

    std::vector<std::string> lines_;
    std::string buffer_;
    bool pending_ = false;
    size_t statementStart_ = 0;
    size_t nextStart_ = 0;
    size_t nextIndex_ = 0;
    size_t scanPosition_ = 0;
};

}  // namespace tabrin
