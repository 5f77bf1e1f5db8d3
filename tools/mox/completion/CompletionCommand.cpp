#include "CompletionCommand.h"

#include "../common/CommandLine.h"
#include "bashCompletion.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* Details = R"(Where mox is installed with its package, bash finds the script by itself.

Examples:
  mox completion bash > ~/.local/share/bash-completion/completions/mox)";

} // namespace

void CompletionCommand::addOptions(CommandLine& line) {
    program_ = line.programHelp();
    line.add("SHELL", shell_, "Only bash is known").oneOf({"bash"});
    line.setDetails(Details);
}

int CompletionCommand::run(Terminal&) {
    fmt::print("{}", bashCompletion(program_()));
    return 0;
}

} // namespace MoxTool
