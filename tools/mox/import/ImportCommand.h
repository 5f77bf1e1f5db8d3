#pragma once

#include "../common/Command.h"
#include "ImportRequest.h"

namespace MoxTool {

/// `mox import MODEL OUT.mox`: converts an Exodus II, CGNS or Gmsh file, recognised by its content.
class ImportCommand : public Command {
public:
    ImportCommand();
    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    ImportRequest request_;
    unsigned long long memory_; // in MiB
};

} // namespace MoxTool
