#pragma once

#include "../common/Command.h"
#include "ManPage.h"

#include <functional>
#include <string>

namespace MoxTool {

/// `mox man`: the manual, made from what --help shows. Used by the build and by packagers too.
class ManCommand : public Command {
public:
    std::string name() const override { return "man"; }
    std::string summary() const override { return "Print a page of the manual, or write all pages"; }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void writeAll() const;
    ManPage pageOf(const std::string& wanted) const;

    std::function<CommandHelp()> program_;
    std::string command_;
    std::string folder_;
};

} // namespace MoxTool
