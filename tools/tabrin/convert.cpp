#include "convert.h"

#include <filesystem>
#include <system_error>

#include "check.h"
#include "console.h"
#include "database.h"
#include "failure.h"
#include "file_system.h"
#include "words.h"

namespace tabrin_tool {

namespace {

namespace fs = std::filesystem;

// An empty file beside the one to be written, removed again unless it got that one's name.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& beside) {
        constexpr int kTries = 100;
        std::string reason;
        for (int i = 0; i < kTries; ++i) {
            path_ = beside.parent_path() /
                    (".tabrin-" + std::to_string(ProcessNumber()) + "-" + std::to_string(i) + ".tmp");
            if (CreateNewFile(path_, reason)) {
                return;
            }
        }
        throw Failure(Utf8FromPath(beside) + ": cannot be written: no file can be made in its folder: " + reason);
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile() {
        if (!kept_) {
            std::error_code error;
            fs::remove(path_, error);
        }
    }

    const fs::path& Path() const { return path_; }

    void MoveTo(const fs::path& target, bool replace) {
        std::string reason;
        std::error_code error;
        const fs::file_status old = fs::status(target, error);
        if (replace && fs::is_regular_file(old)) {
            fs::permissions(path_, old.permissions(), error);  // who may read the file stays as it was
        }
        if (!FlushFileToDisk(path_, reason) || !MoveIntoPlace(path_, target, replace, reason)) {
            throw Failure(Utf8FromPath(target) + ": not written: " + reason);
        }
        kept_ = true;
    }

private:
    fs::path path_;
    bool kept_ = false;
};

std::uint32_t OrderCode(const std::string& order) {
    if (order == "id") {
        return TABRIN_ORDER_IDENTIFIER;
    }
    return order == "name" ? TABRIN_ORDER_NAME : TABRIN_ORDER_DATABASE;
}

const char* OrderText(std::uint32_t order) {
    switch (order) {
        case TABRIN_ORDER_IDENTIFIER:
            return "by identifier, the largest first";
        case TABRIN_ORDER_NAME:
            return "by name";
        default:
            return "in the order of the file read";
    }
}

// The path of the file to write: what a symbolic link points to, so that the link survives.
fs::path TargetOf(const std::string& output, bool force) {
    std::error_code error;
    fs::path path = PathFromUtf8(output);
    if (output.empty()) {
        throw Failure("the path to write to is empty: name a file");
    }
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status)) {
        throw Failure(output + ": this is a folder: name a file in it");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Failure(output + ": this is no ordinary file: name another one");
    }
    if (fs::exists(status) && !force) {
        throw Failure(output + ": there is a file of that name: choose another one, or replace it with --force");
    }
    if (fs::is_symlink(fs::symlink_status(path, error))) {
        const fs::path target = fs::weakly_canonical(path, error);
        path = error ? path : target;
    }
    return path;
}

void WriteTo(const Library& library, const std::string& output, const fs::path& path, std::uint32_t order) {
    const std::string text = Utf8FromPath(path);
    std::uint32_t status = TABRIN_STATUS_FAILED;
    const bool written =
        library.writeDbcFile(text.c_str(), static_cast<std::uint32_t>(text.size()) + 1, order, &status);
    if (!written || status != TABRIN_STATUS_CLOSED) {
        throw Failure(output + ": not written: " + WriteFailureText(status));
    }
}

}  // namespace

int Convert(const Library& library, const ConvertOptions& options, const Paint& paint) {
    const fs::path target = TargetOf(options.output, options.force);
    ReadFile(library, options.input);
    if (library.getNumCanMessages() == 0) {
        throw Failure(options.input + ": there are no messages in it, so nothing is written");
    }
    const std::string errors = ErrorListText(library, options.input, paint);
    const std::uint32_t order = OrderCode(options.order);
    TemporaryFile temporary(target);
    WriteTo(library, options.output, temporary.Path(), order);
    temporary.MoveTo(target, options.force);
    WriteText(Stream::Output, options.output + ": " + Count(library.getNumCanMessages(), "message") + " written, " +
                                  OrderText(order) + "\n");
    if (errors.empty()) {
        return 0;
    }
    WriteText(Stream::Errors, errors + "tabrin: " + Count(library.getNumCanErrors(), "statement") + " of " +
                                  options.input + " cannot be read and " +
                                  (library.getNumCanErrors() == 1 ? "is" : "are") + " missing in " + options.output +
                                  "\n");
    return 1;
}

}  // namespace tabrin_tool
