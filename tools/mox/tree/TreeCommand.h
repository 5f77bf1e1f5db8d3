#pragma once

#include "../common/Command.h"
#include "TreePrinter.h"

namespace MoxTool {

/// `mox tree`: the assembly and its datasets.
class TreeCommand : public Command {
public:
    std::string name() const override { return "tree"; }
    std::string summary() const override { return "Print the assembly and the datasets of each geometry"; }
    void addOptions(CLI::App& app) override;
    int run(Terminal& terminal) override;

private:
    std::string path;
    TreePrinter::Options options;
};

} // namespace MoxTool
