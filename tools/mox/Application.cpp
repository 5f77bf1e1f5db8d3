#include "Application.h"

#include "Commands.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>

namespace MoxTool {

namespace {

constexpr const char* Examples = R"(Examples:
  mox import bracket.e bracket.mox     convert an Exodus II results file
  mox info bracket.mox                 what is in it, and whether it is whole
  mox tree bracket.mox                 its assembly and its datasets
  mox stat bracket.mox                 where its bytes go
  mox dump --no-date bracket.mox       all of it as JSON
  mox check bracket.mox                every damage of it, rule by rule
  mox diff before.mox after.mox        what differs between two files
  mox extract bracket.mox --all out    its numbers as CSV, or for NumPy
  mox export bracket.mox bracket.pvd   for ParaView, or back to Exodus II
  mox salvage crashed.mox saved        what is left of a file that was never closed
  mox info --help                      options of one command
  mox --version)";

constexpr const char* OutputLost = "stdout: the data can't be written; is the disk full?";

// The name of the program with the subcommand that stands on the command line, if any.
std::string calledAs(const CLI::App& app) {
    const auto selected = app.get_subcommands();
    return selected.empty() ? app.get_name() : app.get_name() + " " + selected.front()->get_name();
}

// A full disk or a closed pipe behind stdout. Some writes throw then, in words of their own, and some are
// silent.
bool isOutputLost() {
    std::cout.flush();
    return std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout.good();
}

} // namespace

Application::Application(Terminal& messages)
    : terminal(messages), app("Works on MOX model files", "mox"), commands(makeCommands()) {
    app.set_version_flag("--version", "mox " MOX_VERSION);
    app.footer(Examples);
    app.require_subcommand(0, 1);
    addCommonOptions(app);
    for (const auto& command : commands) {
        auto& level = *app.add_subcommand(command->name(), command->summary());
        command->addOptions(level);
        addCommonOptions(level);
    }
}

// At each level, so that they may stand on either side of the subcommand and each help shows them.
void Application::addCommonOptions(CLI::App& level) {
    constexpr const char* Group = "Options of every command";
    level
        .add_flag("--no-color", noColor,
                  "No colours, not even on a terminal; NO_COLOR in the environment does the same")
        ->group(Group);
    level.add_flag("--progress", showProgress, "Show on stderr, if that is a terminal, how far long work is")
        ->group(Group);
}

int Application::run(int argc, const char* const* argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return reportUsage(error);
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
        return Success;
    }
    return runCommand(selectedCommand());
}

Command& Application::selectedCommand() const {
    return **std::ranges::find_if(
        commands, [this](const auto& command) { return app.got_subcommand(command->name()); });
}

int Application::runCommand(Command& command) {
    if (noColor)
        terminal.dropColours();
    if (!showProgress)
        terminal.hideProgress();
    try {
        const int exitCode = command.run(terminal);
        return isOutputLost() ? reportFailure(command, OutputLost) : exitCode;
    } catch (const std::bad_alloc&) {
        return reportFailure(command, "not enough memory");
    } catch (const std::exception& failure) {
        return reportFailure(command, isOutputLost() ? OutputLost : failure.what());
    }
}

// Requests for help and version come as exceptions too, with exit code 0.
int Application::reportUsage(const CLI::ParseError& error) {
    if (error.get_exit_code() == 0)
        return app.exit(error, std::cout, std::cerr);
    const auto caller = calledAs(app);
    terminal.error(fmt::format("{}: {} (see {} --help)", caller, error.what(), caller));
    return WrongUsage;
}

int Application::reportFailure(const Command& command, std::string_view reason) {
    terminal.error(fmt::format("mox {}: {}", command.name(), reason));
    return command.failureCode();
}

} // namespace MoxTool
