#pragma once

#include "../common/Command.h"
#include "ModelDump.h"

namespace MoxTool {

/// `mox dump`: the whole model as JSON.
class DumpCommand : public Command {
public:
    std::string name() const override { return "dump"; }
    std::string summary() const override { return "Print the whole model as JSON"; }
    std::optional<Example> example() const override {
        return Example{"mox dump --no-date bracket.mox", "all of it as JSON"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    std::string path_;
    ModelDump::Options options_;
    bool noLimit_ = false;
};

} // namespace MoxTool
