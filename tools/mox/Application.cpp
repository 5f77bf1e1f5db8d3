#include "Application.h"

#include "Commands.h"
#include "HelpFormatter.h"
#include "common/CommandLine.h"
#include "common/Platform.h"
#include "common/UsageError.h"
#include "common/closestWord.h"
#include "common/describeHelp.h"
#include "common/unknownCommand.h"
#include "common/visibleText.h"
#include "common/wrapText.h"
#include "version/versionText.h"

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

std::size_t helpWidth() {
    return readableWidth(Platform::terminalWidth(stdout));
}

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

std::string exampleLines(const std::vector<std::unique_ptr<Command>>& commands) {
    std::string lines;
    for (const auto& command : commands) {
        if (const auto example = command->example()) {
            lines += exampleLine(*example);
        }
    }
    return lines;
}

std::string detailsOf(const std::vector<std::unique_ptr<Command>>& commands) {
    return R"(A short option means the same in every command that has it: -o is the file to write, -f replaces it,
-n names a node, -d a dataset, -s a step, -p a part, -a asks for attributes, -j for JSON, -v for all of a
list, -q for silence. Several flags can stand together, as in -fq.
In place of a file to read, most commands take - for stdin.

Examples:
)" + exampleLines(commands) +
           exampleLine({"mox help info", "what one command does, and its options"}) + "  mox version";
}

bool isOption(std::string_view word) {
    return word.size() > 1 && word.starts_with('-');
}

const CLI::App& innermost(const CLI::App& program) {
    const auto selected = program.get_subcommands();
    return selected.empty() ? program : *selected.front();
}

std::string unknownOption(const CLI::App& program, const std::string& word) {
    const auto name = word.substr(0, word.find('='));
    const auto& level = innermost(program);
    const auto known = describeHelp(level).optionNames();
    const bool isOfCommand = &level != &program && std::ranges::find(known, name) != known.end();
    return isOfCommand ? fmt::format("{} has to stand after \"{}\"", name, level.get_name())
                       : fmt::format("there is no option {}{}", visibleText(name), didYouMean(name, known));
}

} // namespace

Application::Application(Terminal& terminal)
    : terminal_(terminal),
      app_(std::make_unique<CLI::App>("Works on MOX model files", "mox")),
      commands_(makeCommands()) {
    app_->formatter(std::make_shared<HelpFormatter>(helpWidth()));
    app_->allow_windows_style_options(false); // there too, a slash begins a path
    app_->set_help_flag("-h,--help", "Show this help");
    app_->set_version_flag("-V,--version", versionText, "Show the version, and which formats are built in");
    app_->footer(detailsOf(commands_));
    app_->require_subcommand(0, 1);
    addCommonOptions(*app_);
    for (const auto& command : commands_) {
        auto& level = *app_->add_subcommand(command->name(), command->summary());
        level.group("Commands");
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
    if (level.get_option_no_throw("--quiet") == nullptr) {
        level.add_flag("-q,--quiet", isQuiet_, "Write nothing but errors to stderr: no summary, no notes")
            ->group(Group);
    }
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
        std::cout << overview();
        return reportLostHelp();
    }
    return runCommand(selectedCommand());
}

std::string Application::overview() const {
    return refillText(
        "mox works on MOX files, which hold finite-element models and their results.\n\n" +
            exampleLines(commands_) +
            "\nmox help lists all commands and options, mox help import explains one of them.\n",
        helpWidth());
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
    if (isQuiet_) {
        terminal_.hideNotes();
    }
    try {
        const int exitCode = command.run(terminal_);
        return isOutputLost() ? reportFailure(command, OutputLost) : exitCode;
    } catch (const std::bad_alloc&) {
        return reportNoMemory(command);
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
    const bool isExtra = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    const auto unexpected = unexpectedWord(isExtra);
    return reportUsage(unexpected.empty() ? error.what() : unexpected);
}

/// What is wrong with an option that there is not, since it is often the reason for other errors; or else
/// with the first word too many.
std::string Application::unexpectedWord(bool isExtra) const {
    const auto words = app_->remaining(true);
    const auto option = std::ranges::find_if(words, isOption);
    if (option != words.end()) {
        return unknownOption(*app_, *option);
    }
    if (!isExtra || words.empty()) {
        return "";
    }
    if (app_->get_subcommands().empty()) {
        return unknownCommand(describeHelp(*app_), words.front());
    }
    return fmt::format("\"{}\" is one argument too many", visibleText(words.front()));
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

int Application::reportNoMemory(const Command& command) {
    try {
        return reportFailure(command, firstArgument(*app_) + "not enough memory");
    } catch (const std::bad_alloc&) {
        // Not even for a line that names the file.
        terminal_.clearProgress();
        (void)std::fputs("mox: not enough memory\n", stderr);
        return command.failureCode();
    }
}

} // namespace MoxTool
