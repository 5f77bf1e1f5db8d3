#pragma once

#include "../common/Command.h"
#include "../common/ConversionSummary.h"
#include "ExportRequest.h"

#include <string>

namespace MoxTool {

/// `mox export FILE OUT`: writes a saved model in the format of another program.
class ExportCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    ConversionSummary exportModel(Terminal& terminal) const;

    ExportRequest request_;
    bool verbose_ = false;
    std::string format_; ///< Empty if the name of the output decides.
};

} // namespace MoxTool
