#include "Application.h"

#include "Commands.h"

#include <fmt/core.h>

#include <iostream>
#include <string>

namespace MoxTool {

namespace {

constexpr const char* Examples = R"(Examples:
  mox import bracket.e bracket.mox     convert an Exodus II results file
  mox import --help                    options of one command
  mox --version)";

// The name of the program with the subcommand that stands on the command line, if any.
std::string calledAs(const CLI::App& app) {
    const auto selected = app.get_subcommands();
    return selected.empty() ? app.get_name() : app.get_name() + " " + selected.front()->get_name();
}

} // namespace

Application::Application(Terminal& messages)
    : terminal(messages), app("Works on MOX model files.", "mox"), commands(makeCommands()) {
    app.set_version_flag("--version", "mox " MOX_VERSION);
    app.footer(Examples);
    app.require_subcommand(0, 1);
    for (const auto& command : commands)
        command->addOptions(*app.add_subcommand(command->name(), command->summary()));
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
    return runSelected();
}

int Application::runSelected() {
    for (const auto& command : commands) {
        if (!app.got_subcommand(command->name()))
            continue;
        try {
            return command->run(terminal);
        } catch (const std::bad_alloc&) {
            reportFailure(*command, std::runtime_error("not enough memory"));
        } catch (const std::exception& failure) {
            reportFailure(*command, failure);
        }
    }
    return Failed;
}

// Requests for help and version come as exceptions too, with exit code 0.
int Application::reportUsage(const CLI::ParseError& error) {
    if (error.get_exit_code() == 0)
        return app.exit(error, std::cout, std::cerr);
    const auto caller = calledAs(app);
    terminal.error(fmt::format("{}: {} (see {} --help)", caller, error.what(), caller));
    return WrongUsage;
}

void Application::reportFailure(const Command& command, const std::exception& failure) {
    terminal.error(fmt::format("mox {}: {}", command.name(), failure.what()));
}

} // namespace MoxTool
