#pragma once

#include "../common/Command.h"

namespace MoxTool {

/// `mox completion`: the script with which bash completes commands, options and file names.
class CompletionCommand : public Command {
public:
    std::string name() const override { return "completion"; }
    std::string summary() const override { return "Print the script for completion in bash"; }
    void addOptions(CLI::App& app) override;
    int run(Terminal& terminal) override;

private:
    const CLI::App* program = nullptr; ///< The level above this command.
    std::string shell = "bash";
};

} // namespace MoxTool
