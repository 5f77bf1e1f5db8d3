#pragma once

#include "../common/Command.h"
#include "TreePrinter.h"

namespace MoxTool {

/// `mox tree`: the assembly and its datasets.
class TreeCommand : public Command {
public:
    std::string name() const override { return "tree"; }
    std::string summary() const override { return "Print the assembly and the datasets of each geometry"; }
    std::optional<Example> example() const override {
        return Example{"mox tree bracket.mox", "its assembly and its datasets"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    std::string path_;
    TreePrinter::Options options_;
};

} // namespace MoxTool
