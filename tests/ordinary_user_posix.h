// Permissions of files bind a test whoever runs it.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace tabrin_test {

// A new folder that is the current one, since the way to it from the root may be closed to others. It is gone with the
// object.
class CurrentFolder {
public:
    explicit CurrentFolder(const std::string& path)
        : before_(std::filesystem::current_path()), path_(std::filesystem::absolute(path)) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directory(path_);
        std::filesystem::current_path(path_);
    }
    ~CurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    CurrentFolder(CurrentFolder&&) = delete;
    CurrentFolder& operator=(CurrentFolder&&) = delete;

private:
    std::filesystem::path before_;
    std::filesystem::path path_;
};

// No permission binds the superuser, so the process acts as somebody else as long as one of these lives.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t kNobody = 65534;
        isOrdinary_ = user_ != 0 || (setegid(kNobody) == 0 && seteuid(kNobody) == 0);
    }
    ~OrdinaryUser() {
        EXPECT_EQ(seteuid(user_), 0);
        EXPECT_EQ(setegid(group_), 0);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    OrdinaryUser(OrdinaryUser&&) = delete;
    OrdinaryUser& operator=(OrdinaryUser&&) = delete;

    [[nodiscard]] bool IsOrdinary() const { return isOrdinary_; }

private:
    uid_t user_ = geteuid();
    gid_t group_ = getegid();
    bool isOrdinary_ = false;
};

// Why a test is skipped where even an OrdinaryUser is none.
inline constexpr char kRightsKept[] = "the superuser cannot give up the right to any file here";

}  // namespace tabrin_test
