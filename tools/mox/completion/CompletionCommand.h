#pragma once

#include "../common/Command.h"
#include "../common/CommandHelp.h"

#include <functional>
#include <string>

namespace MoxTool {

/// `mox completion`: the script with which a shell completes commands, options and file names.
class CompletionCommand : public Command {
public:
    std::string name() const override { return "completion"; }
    std::string summary() const override { return "Print the script for completion in bash, zsh or fish"; }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    std::function<CommandHelp()> program_;
    std::string shell_ = "bash";
};

} // namespace MoxTool
