#pragma once

#include <filesystem>
#include <string>

namespace tabrin_tool {

// Paths travel through the program as UTF-8, as the library wants them.
std::filesystem::path PathFromUtf8(const std::string& text);
std::string Utf8FromPath(const std::filesystem::path& path);

// Makes an empty file. Returns false when there is one of that name already, or on any other failure, with the reason.
bool CreateNewFile(const std::filesystem::path& path, std::string& reason);

// Waits until the contents of the file are on the disk.
bool FlushFileToDisk(const std::filesystem::path& path, std::string& reason);

// Gives a file the name of another one in the same folder in one step: that name stands for the old contents or for the
// new ones, never for none. Without `replace` it fails when the name is taken.
bool MoveIntoPlace(const std::filesystem::path& from, const std::filesystem::path& to, bool replace,
                   std::string& reason);

// A number that other running programs do not have.
unsigned long ProcessNumber();

}  // namespace tabrin_tool
