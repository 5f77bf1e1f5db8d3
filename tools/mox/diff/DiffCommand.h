#pragma once

#include "../common/Command.h"
#include "ComparisonOptions.h"

#include <string>

namespace MoxTool {

/// `mox diff A B`: how two models differ.
class DiffCommand : public Command {
public:
    /// The same as those of diff.
    enum ExitCode : int { Equal = 0, Different = 1, Trouble = 2 };

    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;
    int failureCode() const override { return Trouble; }

private:
    std::string inputA_;
    std::string inputB_;
    ComparisonOptions options_;
    bool asJson_ = false;
    bool quiet_ = false;
};

} // namespace MoxTool
