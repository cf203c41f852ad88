// The files that are read and written. They lie in a folder of their own below the current one, which a program enters:
// short relative paths fit into what the library takes, wherever the build folder is.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tabrin::bench {

class FilesFolder {
public:
    explicit FilesFolder(const std::string& name);
    FilesFolder(const FilesFolder&) = delete;
    FilesFolder& operator=(const FilesFolder&) = delete;
    ~FilesFolder();

private:
    std::filesystem::path outer_;
    std::filesystem::path folder_;
};

void Save(const std::string& path, std::string_view content);
std::string Load(const std::string& path);
std::string WithCrLf(std::string_view text);

}  // namespace tabrin::bench
