#include "show.h"

#include <cctype>
#include <vector>

#include "check.h"
#include "console.h"
#include "database.h"
#include "failure.h"
#include "json_output.h"
#include "message_text.h"
#include "words.h"

namespace tabrin_tool {

namespace {

constexpr std::uint32_t kExtendedFlag = 0x80000000;

std::string Lowered(std::string_view text) {
    std::string lowered;
    for (const char c : text) {
        lowered += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lowered;
}

// "256", "0x100"; an identifier of 29 bits with or without its flag.
bool IsIdentifierOf(const std::string& text, std::uint32_t id) {
    if (text.empty() || std::isdigit(static_cast<unsigned char>(text[0])) == 0) {
        return false;
    }
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    try {
        std::size_t end = 0;
        const unsigned long long number = std::stoull(text, &end, hexadecimal ? 16 : 10);
        return end == text.size() && (number == id || number == (id & ~kExtendedFlag));
    } catch (const std::exception&) {  // too large for any number
        return false;
    }
}

bool IsMeant(const CanMessageData& data, const std::string& text) {
    return text == data.name || text == data.identifierName || IsIdentifierOf(text, data.id);
}

// Names that contain the text in any case, for the complaint that there is no such message.
std::string SimilarNames(const Library& library, const std::string& text) {
    constexpr int kMost = 8;
    std::string names;
    CanMessageData data{};
    int found = 0;
    for (std::uint32_t i = 0; library.getCanMessageData(i, &data) && found < kMost; ++i) {
        if (Lowered(data.name).find(Lowered(text)) != std::string::npos) {
            names += (names.empty() ? "" : ", ") + OneLine(data.name);
            ++found;
        }
    }
    return names;
}

std::vector<std::uint32_t> ChooseMessages(const Library& library, const ShowOptions& options) {
    std::vector<std::uint32_t> chosen;
    CanMessageData data{};
    for (std::uint32_t i = 0; library.getCanMessageData(i, &data); ++i) {
        if (options.message.empty() || IsMeant(data, options.message)) {
            chosen.push_back(i);
        }
    }
    if (chosen.empty() && !options.message.empty()) {
        const std::string similar = SimilarNames(library, options.message);
        throw Failure(options.file + ": there is no message \"" + options.message +
                      "\": give its name, or its identifier as 256 or 0x100" +
                      (similar.empty() ? "" : ". Similar names: " + similar));
    }
    return chosen;
}

std::string FileHead(const Library& library, const std::string& file, const Paint& paint) {
    DatabaseInfo info{};
    library.getDatabaseInfo(&info, sizeof info);
    return paint.Bold(SummaryText(library, file)) + "\nprotocol: " + ProtocolName(info.protocolType) +
           ", CAN FD: " + (info.canFd != 0 ? "yes" : "no") + "\n";
}

}  // namespace

int Show(const Library& library, const ShowOptions& options, const Paint& paint) {
    ReadFile(library, options.file);
    const std::vector<std::uint32_t> messages = ChooseMessages(library, options);
    if (options.json) {
        WriteText(Stream::Output, JsonText(library, options.file, messages));
        return 0;
    }
    const bool whole = options.message.empty();
    if (whole) {
        WriteText(Stream::Output, FileHead(library, options.file, paint));
    }
    for (const std::uint32_t message : messages) {
        const bool first = !whole && message == messages.front();
        WriteText(Stream::Output, (first ? "" : "\n") + MessageText(LoadMessage(library, message), paint));
    }
    if (whole && library.getNumCanErrors() > 0) {
        WriteText(Stream::Output, "\n" + paint.Bold("Left out, because they cannot be read:") + "\n" +
                                      ErrorListText(library, options.file, paint));
    }
    return 0;
}

}  // namespace tabrin_tool
