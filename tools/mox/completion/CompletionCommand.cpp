#include "CompletionCommand.h"

#include "../common/CommandLine.h"
#include "bashCompletion.h"
#include "fishCompletion.h"
#include "zshCompletion.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* CompletionDetails =
    R"(With it the shell completes commands, options, their values and the names of files. Where mox is
installed with its package, each shell finds its script by itself. For zsh the folder must be one of $fpath,
set before compinit.

Examples:
  mox completion bash > ~/.local/share/bash-completion/completions/mox
  mox completion zsh > ~/.zfunc/_mox
  mox completion fish > ~/.config/fish/completions/mox.fish
  source <(mox completion bash))";

} // namespace

void CompletionCommand::addOptions(CommandLine& line) {
    program_ = line.programHelp();
    line.add("SHELL", shell_, "bash, zsh or fish; bash if not given").oneOf({"bash", "zsh", "fish"});
    line.setDetails(CompletionDetails);
}

int CompletionCommand::run(Terminal&) {
    const auto script = shell_ == "zsh" ? zshCompletion : shell_ == "fish" ? fishCompletion : bashCompletion;
    fmt::print("{}", script(program_()));
    return 0;
}

} // namespace MoxTool
