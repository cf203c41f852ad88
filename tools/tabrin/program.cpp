#include "program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "check.h"
#include "console.h"
#include "convert.h"
#include "failure.h"
#include "library.h"
#include "show.h"

namespace tabrin_tool {

namespace {

constexpr int kTrouble = 2;

struct Options {
    ShowOptions show;
    std::vector<std::string> files;  // of check
    ConvertOptions convert;
    std::string colour = "auto";
};

std::string VersionNumber(float version) {
    std::ostringstream text;
    text << version;
    return text.str();
}

std::string VersionText() {
    const std::string own = "tabrin " TABRIN_PROGRAM_VERSION;
    try {
        const Library library = LoadLibraryOfTabrin();
        return own + "\nlibrary " + VersionNumber(library.getLibraryVersion()) + " (" + library.path + ")";
    } catch (const Failure& failure) {
        throw Failure(own + " without its library: " + failure.what());
    }
}

// https://no-color.org: set to anything but an empty text.
bool IsColourUnwanted() {
    const char* value = std::getenv("NO_COLOR");
    return value != nullptr && *value != '\0';
}

Paint ChoosePaint(const std::string& colour) {
    if (colour == "auto") {
        return Paint(!IsColourUnwanted() && IsColourTerminal(Stream::Output));
    }
    return Paint(colour == "always");
}

void AddColour(CLI::App& app, Options& options) {
    app.add_option("--color", options.colour, "auto (on a terminal, unless NO_COLOR is set), always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
}

void AddShow(CLI::App& app, Options& options) {
    CLI::App& command = *app.add_subcommand("show", "Show what a file contains, with a picture of each frame");
    command.add_option("FILE", options.show.file, "DBC file")->type_name("")->required();
    command
        .add_option("MESSAGE", options.show.message, "only this message: its name, or its identifier as 256 or 0x100")
        ->type_name("");
    command.add_flag("--json", options.show.json, "print JSON, for programs");
    AddColour(command, options);
    command.footer(
        "In the picture, [ stands before a signal's most significant bit and ] behind its\n"
        "least significant one. Of a multiplexed message there is one picture for each value\n"
        "of the switch.");
}

void AddCheck(CLI::App& app, Options& options) {
    CLI::App& command = *app.add_subcommand("check", "List the statements of files that cannot be read");
    command.add_option("FILE", options.files, "DBC files")->type_name("")->required();
    AddColour(command, options);
    command.footer("Prints FILE:LINE: and what is wrong there. The exit status is 1 when there were errors.");
}

void AddConvert(CLI::App& app, Options& options) {
    CLI::App& command = *app.add_subcommand("convert", "Read a file and write it anew");
    command.add_option("IN", options.convert.input, "DBC file to read")->type_name("")->required();
    command.add_option("OUT", options.convert.output, "DBC file to write")->type_name("")->required();
    command.add_option("--order", options.convert.order, "order of the messages: id (largest first), name, or file")
        ->type_name("ORDER")
        ->check(CLI::IsMember({"id", "name", "file"}).description(""));
    command.add_flag("--force", options.convert.force, "replace OUT when it exists");
    AddColour(command, options);
    command.footer("What the library does not understand of IN is not in OUT. See docs/dbc-subset.md.");
}

void DescribeProgram(CLI::App& app, Options& options) {
    app.name("tabrin");
    app.require_subcommand(0, 1);            // so that a wrong one is named; none at all is caught afterwards
    app.allow_windows_style_options(false);  // "/folder/file" is a path
    app.footer(
        "`tabrin COMMAND --help` tells more.\n"
        "Exit status: 0; 1 when files have errors; 2 for a wrong call or a file that cannot\n"
        "be read or written.");
    AddShow(app, options);
    AddCheck(app, options);
    AddConvert(app, options);
    app.set_version_flag("--version", VersionText, "print the versions of the program and of the library");
    for (CLI::App* command : app.get_subcommands({})) {
        command->set_version_flag("--version", VersionText, "print the versions");
    }
}

// Help and version are no errors, though the argument parser reports them in the same way.
int ReportParsing(const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    const bool good = app.exit(error, output, errors) == 0;
    WriteText(Stream::Output, output.str());
    WriteText(Stream::Errors, good || errors.str().empty() ? errors.str() : "tabrin: " + errors.str());
    FinishOutput();
    return good ? 0 : kTrouble;
}

int RunCommand(const CLI::App& app, const Options& options) {
    const Library library = LoadLibraryOfTabrin();
    const Paint paint = ChoosePaint(options.colour);
    if (app.got_subcommand("show")) {
        return Show(library, options.show, paint);
    }
    if (app.got_subcommand("check")) {
        return Check(library, options.files, paint);
    }
    return Convert(library, options.convert, paint);
}

int ParseAndRun(std::vector<std::string> arguments) {
    CLI::App app("Shows, checks and converts CAN bus databases in the DBC format.");
    Options options;
    DescribeProgram(app, options);
    std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return ReportParsing(app, error);
    }
    if (app.get_subcommands().empty()) {
        throw Failure("name a command: show, check or convert\nRun with --help for more information.");
    }
    const int status = RunCommand(app, options);
    FinishOutput();
    return status;
}

}  // namespace

int RunProgram(std::vector<std::string> arguments) {
    try {
        return ParseAndRun(std::move(arguments));
    } catch (const std::bad_alloc&) {
        WriteText(Stream::Errors, "tabrin: memory ran out\n");
    } catch (const std::exception& failure) {
        WriteText(Stream::Errors, std::string("tabrin: ") + failure.what() + "\n");
    }
    return kTrouble;
}

}  // namespace tabrin_tool
