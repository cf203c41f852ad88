#include "database.h"

#include "failure.h"
#include "words.h"

namespace tabrin_tool {

namespace {

Signal LoadSignal(const Library& library, std::uint32_t message, std::uint32_t index) {
    Signal signal{};
    if (!library.getCanSignalData(message, index, &signal.data)) {
        throw Failure("signal number " + std::to_string(index) + " of message number " + std::to_string(message) +
                      " cannot be shown: its texts are not valid UTF-8");
    }
    CanSignalEnumData value{};
    for (std::uint32_t i = 0; i < signal.data.numValueDescriptions; ++i) {
        if (library.getCanSignalEnumData(message, index, i, &value)) {
            signal.values.push_back(value);
        }
    }
    return signal;
}

}  // namespace

void ReadFile(const Library& library, const std::string& path) {
    std::uint32_t status = TABRIN_STATUS_FAILED;
    if (!library.readDbcFile(path.c_str(), static_cast<std::uint32_t>(path.size()) + 1, &status)) {
        throw Failure(path + ": " + ReadFailureText(path, status));
    }
}

Message LoadMessage(const Library& library, std::uint32_t index) {
    Message message{};
    if (!library.getCanMessageData(index, &message.data)) {
        throw Failure("message number " + std::to_string(index) + " cannot be shown: its texts are not valid UTF-8");
    }
    message.signals.reserve(message.data.numSignals);
    for (std::uint32_t i = 0; i < message.data.numSignals; ++i) {
        message.signals.push_back(LoadSignal(library, index, i));
    }
    return message;
}

std::vector<CanErrorData> LoadErrors(const Library& library) {
    std::vector<CanErrorData> errors;
    CanErrorData error{};
    for (std::uint32_t i = 0; library.getErrorData(i, &error); ++i) {
        errors.push_back(error);
    }
    return errors;
}

std::int64_t CountSignals(const Library& library) {
    std::int64_t total = 0;
    std::uint32_t count = 0;
    for (std::uint32_t i = 0; library.getNumCanSignals(i, &count); ++i) {
        total += count;
    }
    return total;
}

std::string CommentText(const char* comment) {
    std::string text;
    for (const char* c = comment; *c != '\0'; ++c) {
        if (c[0] != '\\' || c[1] != '"') {
            text += *c;
        }
    }
    return text;
}

}  // namespace tabrin_tool
