#include "words.h"

#include <array>
#include <filesystem>
#include <system_error>

#include "file_system.h"
#include "tabrin.h"

namespace tabrin_tool {

namespace {

// The library only says that a file cannot be opened; the file system knows more.
std::string WhyNotOpened(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(PathFromUtf8(path), error);
    switch (status.type()) {
        case std::filesystem::file_type::not_found:
            return "there is no such file: check its name and folder";
        case std::filesystem::file_type::directory:
            return "this is a folder: name a file in it";
        default:
            return "it cannot be opened: check whether you may read it and no other program keeps it to itself";
    }
}

}  // namespace

std::string ReadFailureText(const std::string& path, std::uint32_t status) {
    std::error_code error;
    switch (status) {
        case TABRIN_STATUS_PATH_TOO_LONG:
            return "its path is longer than 259 bytes: change into its folder, or move it to a shorter path";
        case TABRIN_STATUS_PATH_INVALID:
            return "its path is not valid UTF-8: rename the file";
        case TABRIN_STATUS_PATH_EMPTY:
            return "the path is empty: name a file";
        case TABRIN_STATUS_NOT_OPENED:
            return WhyNotOpened(path);
        default:
            return std::filesystem::is_directory(PathFromUtf8(path), error)
                       ? WhyNotOpened(path)
                       : "reading broke off: the file or its disk is damaged, or memory ran out";
    }
}

std::string WriteFailureText(std::uint32_t status) {
    switch (status) {
        case TABRIN_STATUS_CLOSED:
            return "there are no messages to write";
        case TABRIN_STATUS_PATH_TOO_LONG:
            return "its path is longer than about 230 bytes: change into its folder, or choose a shorter path";
        case TABRIN_STATUS_PATH_INVALID:
            return "its path is not valid UTF-8: choose another name";
        case TABRIN_STATUS_PATH_EMPTY:
            return "the path is empty: name a file";
        case TABRIN_STATUS_NOT_OPENED:
            return "it cannot be opened: check whether you may write to its folder";
        default:
            return "writing broke off: is the disk full?";
    }
}

std::string ErrorText(std::uint32_t code) {
    switch (code) {
        case TABRIN_ERROR_MESSAGE_ID:
            return "no message identifier: a decimal number up to 4294967295 has to follow BO_";
        case TABRIN_ERROR_MESSAGE_NAME:
            return "no message name: a name and \":\" have to follow the identifier";
        case TABRIN_ERROR_MESSAGE_LENGTH:
            return "no message length: a number up to 4294967295 has to follow \":\"";
        case TABRIN_ERROR_SIGNAL_NAME:
            return "no signal: a name, M or m<number> for a multiplexed one, and \":\" have to follow SG_";
        case TABRIN_ERROR_SIGNAL_BITS:
            return "no bits: start bit, length, byte order and sign have to follow \":\", as in 0|16@1+";
        case TABRIN_ERROR_SIGNAL_SCALE:
            return "no scale: factor and offset have to follow the bits, as in (0.5,-40)";
        case TABRIN_ERROR_SIGNAL_RANGE:
            return "no range: minimum and maximum have to follow the scale, as in [0|255]";
        default:
            return "this statement cannot be read";
    }
}

const char* ProtocolName(std::uint32_t protocolType) {
    static constexpr std::array<const char*, 3> kNames = {"none", "J1939", "NMEA 2000"};
    return protocolType < kNames.size() ? kNames[protocolType] : "unknown";
}

const char* ValueTypeName(std::uint32_t valueType) {
    static constexpr std::array<const char*, 4> kNames = {"unsigned", "signed", "float", "double"};
    return valueType < kNames.size() ? kNames[valueType] : "unknown";
}

std::string Count(std::int64_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace tabrin_tool
