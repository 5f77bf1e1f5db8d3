#pragma once

#include "../common/Command.h"
#include "../common/CommandHelp.h"

#include <functional>
#include <string>

namespace MoxTool {

/// `mox help COMMAND`: the same as `mox COMMAND --help`.
class HelpCommand : public Command {
public:
    std::string name() const override { return "help"; }
    std::string summary() const override { return "Explain mox or one of its commands"; }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void requireKnown() const;

    std::function<CommandHelp()> program_;
    std::function<std::string(const std::string&)> helpText_;
    std::string command_;
};

} // namespace MoxTool
