#include "Application.h"

#include "Commands.h"
#include "common/CommandLine.h"
#include "common/UsageError.h"

#include <CLI/CLI.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>

namespace MoxTool {

namespace {

constexpr const char* OutputLost = "stdout: the data can't be written; is the disk full?";

// The name of the program, followed by the subcommand on the command line, if any.
std::string calledAs(const CLI::App& app) {
    const auto selected = app.get_subcommands();
    return selected.empty() ? app.get_name() : app.get_name() + " " + selected.front()->get_name();
}

// The first argument of the subcommand, for most of them the file they read, and a colon; empty without one.
std::string firstArgument(const CLI::App& app) {
    const auto isArgument = [](const CLI::Option* option) {
        return option->get_positional() && option->count() > 0;
    };
    const auto& level = *app.get_subcommands().front();
    for (const auto* option : level.get_options()) {
        if (isArgument(option)) {
            return option->results().front() + ": ";
        }
    }
    return "";
}

// Detects a full disk or a closed pipe on stdout. Some of these writes throw, with a text of their own, and
// others fail silently.
bool isOutputLost() {
    std::cout.flush();
    return std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout.good();
}

std::string exampleLine(const Command::Example& example) {
    return fmt::format("  {:<37}{}\n", example.line, example.purpose);
}

std::string examplesOf(const std::vector<std::unique_ptr<Command>>& commands) {
    std::string lines = "Examples:\n";
    for (const auto& command : commands) {
        if (const auto example = command->example()) {
            lines += exampleLine(*example);
        }
    }
    return lines + exampleLine({"mox info --help", "options of one command"}) + "  mox --version";
}

} // namespace

Application::Application(Terminal& terminal)
    : terminal_(terminal),
      app_(std::make_unique<CLI::App>("Works on MOX model files", "mox")),
      commands_(makeCommands()) {
    app_->set_version_flag("--version", "mox " MOX_VERSION);
    app_->footer(examplesOf(commands_));
    app_->require_subcommand(0, 1);
    addCommonOptions(*app_);
    for (const auto& command : commands_) {
        auto& level = *app_->add_subcommand(command->name(), command->summary());
        CommandLine line(level);
        command->addOptions(line);
        addCommonOptions(level);
    }
}

Application::~Application() = default;

// Added at each level, so that they work before and after the subcommand and every help text lists them.
void Application::addCommonOptions(CLI::App& level) {
    constexpr const char* Group = "Options of every command";
    level
        .add_flag("--no-color", noColor_,
                  "No colours, not even on a terminal; NO_COLOR in the environment does the same")
        ->group(Group);
    level
        .add_flag("--progress", showProgress_, "Show on stderr, if that is a terminal, how far long work is")
        ->group(Group);
}

int Application::run(int argc, const char* const* argv) {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return reportParseError(error);
    } catch (const UsageError& error) {
        return reportUsage(error.what());
    }
    if (app_->get_subcommands().empty()) {
        std::cout << app_->help();
        return reportLostHelp();
    }
    return runCommand(selectedCommand());
}

Command& Application::selectedCommand() const {
    return **std::ranges::find_if(
        commands_, [this](const auto& command) { return app_->got_subcommand(command->name()); });
}

int Application::runCommand(Command& command) {
    if (noColor_) {
        terminal_.dropColours();
    }
    if (!showProgress_) {
        terminal_.hideProgress();
    }
    try {
        const int exitCode = command.run(terminal_);
        return isOutputLost() ? reportFailure(command, OutputLost) : exitCode;
    } catch (const std::bad_alloc&) {
        return reportFailure(command, firstArgument(*app_) + "not enough memory");
    } catch (const std::exception& failure) {
        return reportFailure(command, isOutputLost() ? OutputLost : failure.what());
    }
}

// Requests for the help and the version come as exceptions too, with exit code 0.
int Application::reportParseError(const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        app_->exit(error, std::cout, std::cerr);
        return reportLostHelp();
    }
    return reportUsage(error.what());
}

int Application::reportLostHelp() {
    if (!isOutputLost()) {
        return Success;
    }
    terminal_.error(fmt::format("{}: {}", calledAs(*app_), OutputLost));
    return HelpLost;
}

int Application::reportUsage(std::string_view reason) {
    const auto caller = calledAs(*app_);
    terminal_.error(fmt::format("{}: {} (see {} --help)", caller, reason, caller));
    return WrongUsage;
}

int Application::reportFailure(const Command& command, std::string_view reason) {
    terminal_.error(fmt::format("mox {}: {}", command.name(), reason));
    return command.failureCode();
}

} // namespace MoxTool
