#pragma once

#include "../common/Command.h"

namespace MoxTool {

/// `mox version`: the same as `mox --version`.
class VersionCommand : public Command {
public:
    std::string name() const override { return "version"; }
    std::string summary() const override { return "Show the version, and which formats are built in"; }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;
};

} // namespace MoxTool
