#include "fuzz/io/scan_check.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/check.h"
#include "fuzz/naive_text.h"
#include "io/identifier.h"
#include "io/line_buffer.h"
#include "io/line_text.h"
#include "io/text_number.h"
#include "io/text_scan.h"
#include "io/text_utf8.h"
#include "io/token_reader.h"

namespace tabrin_fuzz {

namespace {

using tabrin::kNpos;

// --- Blanks, keywords, pieces

size_t NaiveNonBlank(std::string_view text, size_t pos) {
    return text.find_first_not_of(" \f\n\r\t\v", pos);
}

void CheckKeywordAt(std::string_view text, size_t pos) {
    for (const std::string_view keyword :
         {"BO_", "SG_", "CM_", "VAL_", "SIG_VALTYPE_", "BA_", "BA_DEF_", "BA_DEF_DEF_"}) {
        const size_t start = NaiveNonBlank(text, pos);
        bool expected = false;
        size_t expectedEnd = kNpos;
        if (start != kNpos) {
            expectedEnd = start + keyword.size();
            expected = text.size() > expectedEnd && NaiveIsBlank(text[expectedEnd]) &&
                       text.substr(start, keyword.size()) == keyword;
        }
        size_t end = 0;
        Require(tabrin::KeywordAt(text, keyword, pos, end) == expected && end == expectedEnd, "KeywordAt");
    }
}

void CheckPieces(std::string_view text, size_t pos, size_t last, char delimiter) {
    size_t found = 0;
    const std::string_view until = tabrin::TextUntilChar(text, pos, delimiter, found);
    size_t expected = pos;
    while (expected < text.size() && text[expected] != delimiter) {
        ++expected;
    }
    const bool isThere = expected < text.size();
    Require(found == (isThere ? expected : kNpos), "TextUntilChar finds another position");
    Require(until == (isThere ? text.substr(pos, expected - pos) : std::string_view()), "TextUntilChar");

    std::string between;
    if (pos < text.size() && pos < last) {
        between = NaiveTrimmed(text.substr(pos, std::min(last, text.size() - 1) - pos + 1));
    }
    Require(tabrin::TrimmedBetween(text, pos, last) == between, "TrimmedBetween");
    Require(tabrin::Trimmed(text) == NaiveTrimmed(text), "Trimmed");
    const size_t lastNonBlank = text.empty() ? kNpos : text.find_last_not_of(" \f\n\r\t\v", pos);
    Require(tabrin::FindLastNonBlank(text, pos) == lastNonBlank, "FindLastNonBlank");
    Require(tabrin::FindNonBlank(text, pos) == NaiveNonBlank(text, pos), "FindNonBlank");
    std::string normalised(text);
    tabrin::NormaliseBlanks(normalised);
    Require(normalised == NaiveNormalised(std::string(text)), "NormaliseBlanks");
}

// --- Whole numbers

struct NaiveNumber {
    bool any = false;
    bool negative = false;
    bool tooLarge = false;  // for 64 bits
    uint64_t magnitude = 0;
};

NaiveNumber NaiveWhole(std::string_view text) {
    NaiveNumber number;
    size_t pos = std::min(NaiveNonBlank(text, 0), text.size());
    if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
        number.negative = text[pos++] == '-';
    }
    for (; pos < text.size() && NaiveIsDigit(text[pos]); ++pos) {
        const auto digit = static_cast<uint64_t>(text[pos] - '0');
        number.any = true;
        number.tooLarge = number.tooLarge || number.magnitude > (UINT64_MAX - digit) / 10;
        number.magnitude = number.magnitude * 10 + digit;
    }
    return number;
}

bool NaiveU32(std::string_view text, uint32_t& value) {
    const NaiveNumber number = NaiveWhole(text);
    const bool fits = number.any && !number.tooLarge && number.magnitude <= UINT32_MAX;
    const auto magnitude = static_cast<uint32_t>(number.magnitude);
    value = !fits ? 0 : number.negative ? 0U - magnitude : magnitude;
    return fits;
}

template <typename Signed>
bool NaiveSigned(std::string_view text, Signed& value) {
    const NaiveNumber number = NaiveWhole(text);
    const auto most = static_cast<uint64_t>(std::numeric_limits<Signed>::max());
    const bool fits = number.any && !number.tooLarge && number.magnitude <= most + (number.negative ? 1U : 0U);
    value = !fits ? 0 : static_cast<Signed>(number.negative ? 0U - number.magnitude : number.magnitude);
    return fits;
}

void CheckWholeNumbers(std::string_view text) {
    uint32_t u32 = 99;
    uint32_t expectedU32 = 0;
    const bool isU32 = NaiveU32(text, expectedU32);
    Require(tabrin::ToU32(text, u32) == isU32 && u32 == expectedU32, "ToU32");
    int32_t i32 = 99;
    int32_t expectedI32 = 0;
    const bool isI32 = NaiveSigned(text, expectedI32);
    Require(tabrin::ToI32(text, i32) == isI32 && i32 == expectedI32, "ToI32");
    int64_t i64 = 99;
    int64_t expectedI64 = 0;
    const bool isI64 = NaiveSigned(text, expectedI64);
    Require(tabrin::ToI64(text, i64) == isI64 && i64 == expectedI64, "ToI64");
    tabrin::LineText written;
    written.AppendNumber(u32).Append(' ').AppendNumber(i32);
    Require(written.View() == std::to_string(u32) + " " + std::to_string(i32), "FormatNumber of a whole number");
}

// The numbers in front of a delimiter, which is none of the characters that numbers consist of.
void CheckNumbersUntil(std::string_view text, size_t pos) {
    for (const char delimiter : {'|', '@', ',', ')', ']'}) {
        size_t expectedFound = 0;
        const std::string_view number = tabrin::TextUntilChar(text, pos, delimiter, expectedFound);
        uint32_t expectedU32 = 0;
        const bool isU32 = NaiveU32(number, expectedU32);
        uint32_t u32 = 99;
        size_t found = 0;
        Require(tabrin::U32UntilChar(text, pos, delimiter, u32, found) == isU32, "U32UntilChar");
        Require(u32 == expectedU32 && found == expectedFound, "U32UntilChar gives another number or position");
        double expected = 99.0;
        const bool isDouble = tabrin::ToDouble(number, expected);
        double value = 99.0;
        Require(tabrin::DoubleUntilChar(text, pos, delimiter, value, found) == isDouble, "DoubleUntilChar");
        Require(std::memcmp(&value, &expected, sizeof value) == 0 && found == expectedFound,
                "DoubleUntilChar gives another number or position");
    }
}

// A token is the number when it has as many characters behind its leading zeros as the number has digits.
void CheckUnsignedToken(std::string_view text, size_t pos) {
    const size_t start = NaiveNonBlank(text, pos);
    const size_t blank = start == kNpos ? kNpos : text.find_first_of(" \f\n\r\t\v", start);
    bool expected = false;
    uint32_t expectedValue = 0;
    if (blank != kNpos) {
        const std::string token(text.substr(start, blank - start));
        expected = NaiveU32(token, expectedValue);
        const std::string behindZeros = token.substr(std::min(token.find_first_not_of('0'), token.size()));
        if (expectedValue == 0) {
            expected = expected && behindZeros.empty();
        } else {
            const size_t size = token.size() == 1 ? 1 : behindZeros.size();
            expected = expected && size == std::to_string(expectedValue).size();
        }
    }
    uint32_t value = 99;
    size_t end = 99;
    Require(tabrin::UnsignedToken(text, pos, value, end) == expected, "UnsignedToken");
    Require(value == (expected ? expectedValue : 0) && end == (expected ? blank : kNpos),
            "the number of UnsignedToken");
}

// --- Tokens

std::vector<std::string> NaiveTokens(std::string_view text, std::string_view delimiters) {
    std::vector<std::string> pieces;
    for (size_t pos = text.find_first_not_of(delimiters); pos != kNpos; pos = text.find_first_not_of(delimiters, pos)) {
        const size_t end = std::min(text.find_first_of(delimiters, pos), text.size());
        pieces.emplace_back(text.substr(pos, end - pos));
        pos = end;
    }
    std::vector<std::string> tokens;
    bool inside = false;
    for (const std::string& piece : pieces) {
        if (inside) {
            tokens.back() += " " + piece;
            inside = piece.back() != '"';
        } else {
            tokens.push_back(piece);
            inside = piece.front() == '"' && piece.rfind('"') != piece.size() - 1;
        }
    }
    return tokens;
}

tabrin::TokenKind NaiveKind(const std::string& token) {
    const size_t first = token.find('"');
    if (first != kNpos && token.rfind('"') > first + 1) {
        return tabrin::TokenKind::Quoted;
    }
    int64_t number = 0;
    const bool isNumber = !token.empty() && NaiveIsDigit(token.front()) && NaiveSigned(token, number);
    return isNumber ? tabrin::TokenKind::Number : tabrin::TokenKind::Word;
}

void CheckTokens(std::string_view text, std::string_view delimiters) {
    const std::vector<std::string> tokens = NaiveTokens(text, delimiters);
    Require(tabrin::SplitTokens(text, delimiters) == tokens, "SplitTokens");
    const std::vector<tabrin::TokenKind> kinds = tabrin::ClassifyTokens(tokens);
    Require(kinds.size() == tokens.size(), "ClassifyTokens gives another number of kinds");
    for (size_t i = 0; i < tokens.size(); ++i) {
        Require(kinds[i] == NaiveKind(tokens[i]), "ClassifyTokens");
        const size_t first = tokens[i].find('"');
        const size_t last = tokens[i].rfind('"');
        const bool quoted = first != last;
        Require(tabrin::Unquoted(tokens[i]) == (quoted ? tokens[i].substr(first + 1, last - first - 1) : ""),
                "Unquoted");
    }
}

// --- UTF-8 and identifiers

std::u16string NaiveWide(std::string_view text) {
    std::u16string wide;
    for (size_t pos = 0; pos < text.size();) {
        uint32_t codePoint = 0;
        pos += std::max<size_t>(NaiveSequence(text, pos, codePoint), 1);
        if (codePoint >= 0x10000) {
            wide += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            wide += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FFU));
        } else {
            wide += static_cast<char16_t>(codePoint);
        }
    }
    return wide;
}

template <typename Function>
bool Throws(Function function) {
    try {
        function();
    } catch (const Failure&) {
        throw;
    } catch (const std::exception&) {
        return true;
    }
    return false;
}

void CheckIdentifiers(std::string_view text) {
    Require(tabrin::IsIdentifier(text) == NaiveIsIdentifier(text), "IsIdentifier");
    const bool valid = NaiveIsUtf8(text);
    Require(Throws([&] { Require(tabrin::AsciiFold(text) == NaiveFolded(text), "AsciiFold"); }) != valid,
            "AsciiFold takes what is not UTF-8 or refuses what is");
    Require(Throws([&] { Require(tabrin::Utf8ToWide(text) == NaiveWide(text), "Utf8ToWide"); }) != valid,
            "Utf8ToWide takes what is not UTF-8 or refuses what is");
    const std::string repaired = NaiveRepaired(std::string(text));
    const std::string identifier = tabrin::MakeIdentifier(repaired);
    Require(identifier == NaiveMadeIdentifier(repaired), "MakeIdentifier");
    Require(identifier.empty() ? repaired.empty() : NaiveIsIdentifier(identifier), "MakeIdentifier makes none");
    std::string appended = "x";
    tabrin::AppendIdentifier(appended, repaired);
    Require(appended == "x" + identifier, "AppendIdentifier");
}

void CheckUtf8(std::string_view text) {
    // Exactly as large as needed, so that a look behind the end is noticed.
    const auto copy = std::make_unique<char[]>(text.size());
    std::copy(text.begin(), text.end(), copy.get());
    Require(tabrin::FirstInvalidUtf8({copy.get(), text.size()}) == NaiveFirstInvalid(text), "FirstInvalidUtf8");
    tabrin::RepairUtf8(copy.get(), text.size());
    const std::string repaired = NaiveRepaired(std::string(text));
    Require(std::string_view(copy.get(), text.size()) == repaired, "RepairUtf8");
    std::copy(text.begin(), text.end(), copy.get());
    const size_t size = tabrin::CleanLine(copy.get(), text.size());
    Require(std::string_view(copy.get(), size) == NaiveWithoutControls(repaired), "CleanLine");
}

void CheckBuffers(std::string_view text, size_t size) {
    size_t length = 99;
    size_t expected = 0;
    const bool fits = NaiveSafeLength(text, size, expected);
    Require(tabrin::Utf8SafeLength(text, size, length) == fits && length == expected, "Utf8SafeLength");

    const auto buffer = std::make_unique<char[]>(size);
    std::memset(buffer.get(), 0x5A, size);
    Require(tabrin::CopyToBuffer(buffer.get(), text, size) == fits, "the result of CopyToBuffer");
    Require(size == 0 || text.substr(0, expected) == std::string_view(buffer.get(), expected), "CopyToBuffer");
    Require(size == 0 || buffer[expected] == '\0', "CopyToBuffer leaves no NUL");
    for (size_t i = expected + 1; i < size; ++i) {
        Require(buffer[i] == 0x5A, "CopyToBuffer touches what lies behind the NUL");
    }

    const size_t given = std::min(size, text.size());
    const auto field = std::make_unique<char[]>(given);
    std::copy_n(text.data(), given, field.get());
    std::string taken = "x";
    std::string expectedText;
    const bool takes = NaiveTakenField(field.get(), given, expectedText);
    Require(tabrin::StringFromBuffer(taken, field.get(), given) == takes && taken == expectedText, "StringFromBuffer");
}

}  // namespace

void CheckScan(std::string_view bytes) {
    if (bytes.size() < 4) {
        return;
    }
    // Positions beyond the text too, and none at all.
    const auto positionAt = [&](size_t i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        return byte == 0xFF ? kNpos : byte == 0xFE ? bytes.size() - 4 : size_t{byte};
    };
    const size_t pos = positionAt(0);
    const size_t last = positionAt(1);
    const auto size = static_cast<unsigned char>(bytes[2]);
    const char delimiter = bytes[3];
    const std::string text(bytes.substr(4));
    CheckKeywordAt(text, pos);
    CheckPieces(text, pos, last, delimiter);
    CheckWholeNumbers(text);
    CheckNumbersUntil(text, pos);
    CheckUnsignedToken(text, pos);
    CheckTokens(text, " \f\n\r\t\v;,");
    CheckTokens(text, std::string_view(&delimiter, 1));
    CheckIdentifiers(text);
    CheckUtf8(text);
    CheckBuffers(text, size);
}

}  // namespace tabrin_fuzz
