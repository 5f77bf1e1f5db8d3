#pragma once

#include "../common/Command.h"
#include "../parts/FileSplit.h"

namespace MoxTool {

/// `mox split FILE OUTDIR`: a file for each part of a model, the counterpart of `mox join`.
class SplitCommand : public Command {
public:
    std::string name() const override { return "split"; }
    std::string summary() const override { return "Split a file into one for each part of its tree"; }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    SplitRequest request_;
    bool byShape_ = false;
};

} // namespace MoxTool
