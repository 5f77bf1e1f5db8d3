#pragma once

#include "../Command.h"
#include "ImportRequest.h"

namespace MoxTool {

/// `mox import MODEL.e OUT.mox`: converts an Exodus II results file.
class ImportCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    void addOptions(CLI::App& app) override;
    int run(Terminal& terminal) override;

private:
    ImportRequest request;
};

} // namespace MoxTool
