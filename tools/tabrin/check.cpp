#include "check.h"

#include <algorithm>

#include "console.h"
#include "database.h"
#include "failure.h"
#include "source_lines.h"
#include "words.h"

namespace tabrin_tool {

namespace {

// Statements may run over many lines; the first ones suffice to recognise them.
std::string QuotedStatement(std::string_view text) {
    constexpr int kLines = 3;
    std::size_t end = 0;
    for (int i = 0; i < kLines && end != std::string_view::npos; ++i) {
        end = text.find('\n', end + (i == 0 ? 0 : 1));
    }
    std::string quoted = Indented(4, text.substr(0, end));
    if (end != std::string_view::npos && text.find_first_not_of(" \r\n\t\v\f", end) != std::string_view::npos) {
        quoted += "    ...\n";
    }
    return quoted;
}

struct Totals {
    std::int64_t messages = 0;
    std::int64_t signals = 0;
    std::int64_t errors = 0;
    std::int64_t unreadable = 0;
};

void CheckFile(const Library& library, const std::string& file, const Paint& paint, Totals& totals) {
    try {
        ReadFile(library, file);
    } catch (const Failure& failure) {
        WriteText(Stream::Errors, std::string("tabrin: ") + failure.what() + "\n");
        ++totals.unreadable;
        return;
    }
    WriteText(Stream::Output, ErrorListText(library, file, paint) + paint.Bold(SummaryText(library, file)) + "\n");
    totals.messages += library.getNumCanMessages();
    totals.signals += CountSignals(library);
    totals.errors += library.getNumCanErrors();
}

}  // namespace

std::vector<LocatedError> LocateErrors(const Library& library, const std::string& file) {
    std::vector<LocatedError> located;
    const std::vector<CanErrorData> errors = LoadErrors(library);
    if (errors.empty()) {
        return located;
    }
    const SourceLines lines(file);
    std::uint32_t previous = 0;
    for (const CanErrorData& error : errors) {
        previous = lines.LineOf(error, previous);
        located.push_back({error, previous});
    }
    return located;
}

std::string ErrorListText(const Library& library, const std::string& file, const Paint& paint) {
    std::string text;
    for (const LocatedError& error : LocateErrors(library, file)) {
        text += paint.Bold(file + ":" + std::to_string(error.line) + ":") + " " +
                paint.Red("error " + std::to_string(error.data.code) + ":") + " " + ErrorText(error.data.code) + "\n" +
                QuotedStatement(error.data.text);
    }
    return text;
}

std::string SummaryText(const Library& library, const std::string& file) {
    return file + ": " + Count(library.getNumCanMessages(), "message") + ", " + Count(CountSignals(library), "signal") +
           ", " + Count(library.getNumCanErrors(), "error");
}

int Check(const Library& library, const std::vector<std::string>& files, const Paint& paint) {
    Totals totals;
    for (const std::string& file : files) {
        CheckFile(library, file, paint, totals);
    }
    if (files.size() > 1) {
        WriteText(Stream::Output,
                  Count(static_cast<std::int64_t>(files.size()), "file") + ": " + Count(totals.messages, "message") +
                      ", " + Count(totals.signals, "signal") + ", " + Count(totals.errors, "error") +
                      (totals.unreadable > 0 ? ", " + std::to_string(totals.unreadable) + " unreadable" : "") + "\n");
    }
    if (totals.errors > 0) {
        WriteText(Stream::Output,
                  "Signals that follow a faulty statement are left out up to the next message, without an error of "
                  "their own.\n");
    }
    if (totals.unreadable > 0) {
        return 2;
    }
    return totals.errors > 0 ? 1 : 0;
}

}  // namespace tabrin_tool
