#include "dbc/dbc_writer.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "dbc/comment_statement.h"
#include "dbc/later_lines.h"
#include "dbc/value_statements.h"
#include "dbc/well_known_attributes.h"
#include "io/dbc_keywords.h"
#include "io/quick_key.h"

namespace tabrin {

namespace {

// The messages in the order in which they are written. Messages that compare equal keep their order.
CANDatabase::Messages OrderedMessages(const CANDatabase::Messages& messages, uint32_t messageOrder) {
    CANDatabase::Messages ordered = messages;
    if (messageOrder == TABRIN_ORDER_IDENTIFIER) {
        std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a->id > b->id; });
    } else if (messageOrder == TABRIN_ORDER_NAME) {
        std::stable_sort(ordered.begin(), ordered.end(),
                         [](const auto& a, const auto& b) { return a->identifierName < b->identifierName; });
    }
    return ordered;
}

void WriteVersionSection(DbcFileStream& stream) {
    stream.WriteLine(std::string(kVersionKeyword) + " \"\"");
    stream.WriteLine("");
    stream.WriteLine(std::string(kNewSymbolsKeyword) + " :");
    for (const std::string_view symbol : kNewSymbols) {
        stream.WriteLine("    " + std::string(symbol));
    }
    stream.WriteLine("");
}

void WriteBitTimingSection(DbcFileStream& stream) {
    stream.WriteLine(std::string(kBitTimingKeyword) + " :");
    stream.WriteLine("");
}

void WriteNodesSection(DbcFileStream& stream, const CANDatabase::Messages& messages) {
    stream.WriteLine(CollectNodeNames(messages));
    stream.WriteLine("");
}

LaterLines WriteMessagesSection(DbcFileStream& stream, const CANDatabase::Messages& messages) {
    LaterLines later;
    for (const auto& message : messages) {
        message->AppendDefinitionLine(stream.StartLine());
        stream.WriteLine();
        for (const auto& signal : message->signals) {
            signal->AppendDefinitionLine(stream.StartLine());
            stream.WriteLine();
        }
        stream.WriteLine("");
        later.NoteDown(*message);
    }
    return later;
}

void WriteSections(DbcFileStream& stream, const CANDatabase& database, const CANDatabase::Messages& ordered) {
    WriteVersionSection(stream);
    WriteBitTimingSection(stream);
    WriteNodesSection(stream, database.messages);
    const LaterLines later = WriteMessagesSection(stream, ordered);
    WriteCommentsSection(stream, ordered, later.comments);
    WriteWellKnownAttributes(stream, database.info, ordered, later.longNames);
    WriteValueDescriptionsSection(stream, later.valueDescriptions);
    WriteValueTypesSection(stream, later.valueTypes);
}

// Remembers some of the texts that it was asked about.
class RecentTexts {
public:
    // Whether the text is known; it is from now on.
    bool Knows(std::string_view text) {
        std::string_view& place = places_[QuickKey(text) % places_.size()];
        return std::exchange(place, text) == text;
    }

private:
    std::array<std::string_view, 256> places_{};
};

// Most signals have a list of receivers that another one had shortly before.
std::vector<std::string_view> DescendingNodeNames(const CANDatabase::Messages& messages) {
    std::unordered_set<std::string_view> names;
    RecentTexts recent;
    for (const auto& message : messages) {
        names.insert(message->transmitter.empty() ? kDefaultNode : message->transmitter);
        for (const auto& signal : message->signals) {
            if (signal->receivers.IsEmpty()) {
                names.insert(kDefaultNode);
            } else if (!recent.Knows(signal->receivers.Joined())) {
                signal->receivers.ForEach([&](std::string_view name) { names.insert(name); });
            }
        }
    }
    std::vector<std::string_view> descending(names.begin(), names.end());
    std::sort(descending.begin(), descending.end(), std::greater<>());
    return descending;
}

}  // namespace

bool WriteDbcFile(CANDatabase& database, const char* path, uint32_t pathBufferSize, uint32_t messageOrder,
                  FileStatus& status) {
    if (database.messages.empty()) {
        status = FileStatus::Closed;
        return false;
    }
    DbcFileStream stream;
    stream.Open(path, pathBufferSize, OpenMode::Write);
    status = stream.Status();
    if (status != FileStatus::Writing) {
        return false;
    }
    for (const auto& message : database.messages) {
        message->PrepareForWriting();
    }
    WriteSections(stream, database, OrderedMessages(database.messages, messageOrder));
    status = stream.Status();
    stream.Close();
    if (status != FileStatus::Writing) {
        return false;
    }
    status = stream.Status();
    return true;
}

// The line wraps in front of a name with which it would grow to 256 characters. What counts is the length of everything
// so far less 256 for each wrap, which is only roughly the length of the current line.
std::string CollectNodeNames(const CANDatabase::Messages& messages) {
    constexpr size_t kWrapLength = 256;
    std::string text = std::string(kNodesKeyword) + " : ";
    size_t wrapped = 0;
    for (const std::string_view name : DescendingNodeNames(messages)) {
        if (text.size() - wrapped + name.size() >= kWrapLength) {
            text += '\n';
            wrapped += kWrapLength;
        } else {
            text += ' ';
        }
        text += name;
    }
    return text;
}

}  // namespace tabrin
