#pragma once

#include "../common/Command.h"
#include "ModelDump.h"

namespace MoxTool {

/// `mox dump`: the whole model as JSON.
class DumpCommand : public Command {
public:
    std::string name() const override { return "dump"; }
    std::string summary() const override { return "Print the whole model as JSON"; }
    void addOptions(CLI::App& app) override;
    int run(Terminal& terminal) override;

private:
    std::string path;
    ModelDump::Options options;
};

} // namespace MoxTool
