#pragma once

#include <cstdint>
#include <string>

namespace tabrin_tool {

// What became of a file that could not be read or written, and what to do about it.
std::string ReadFailureText(const std::string& path, std::uint32_t status);
std::string WriteFailureText(std::uint32_t status);

// What a statement lacks, for one of the TABRIN_ERROR_... codes.
std::string ErrorText(std::uint32_t code);

const char* ProtocolName(std::uint32_t protocolType);
const char* ValueTypeName(std::uint32_t valueType);

// "1 message", "2 messages"
std::string Count(std::int64_t count, const char* noun);

}  // namespace tabrin_tool
