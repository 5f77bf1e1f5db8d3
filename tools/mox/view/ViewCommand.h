#pragma once

#include "../common/Command.h"
#include "../mesh/ModelSelection.h"

#include <string>

namespace MoxTool {

/// `mox view FILE`: shows a model in a browser.
class ViewCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void writePage(Terminal& terminal) const;

    ModelSelection selection_;
    std::string output_; ///< Empty for a name made from the input's.
    unsigned long mostMegabytes_ = 200;
    bool overwrite_ = false;
    bool serve_ = false;
    bool noOpen_ = false;
};

} // namespace MoxTool
