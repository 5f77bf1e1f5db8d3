#include "CompletionCommand.h"

#include "bashCompletion.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* Details = R"(Where mox is installed with its package, bash finds the script by itself.

Examples:
  mox completion bash > ~/.local/share/bash-completion/completions/mox)";

} // namespace

void CompletionCommand::addOptions(CLI::App& app) {
    program = app.get_parent();
    app.add_option("SHELL", shell, "Only bash is known")->check(CLI::IsMember({"bash"}));
    app.footer(Details);
}

int CompletionCommand::run(Terminal&) {
    fmt::print("{}", bashCompletion(*program));
    return 0;
}

} // namespace MoxTool
