#pragma once

#include "../common/Command.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <optional>
#include <string>

namespace MoxTool {

/// `mox info`: a file on one screen.
class InfoCommand : public Command {
public:
    std::string name() const override { return "info"; }
    std::string summary() const override {
        return "Say on one screen what a file is and whether it is whole";
    }
    std::optional<Example> example() const override {
        return Example{"mox info bracket.mox", "what is in it, and whether it is whole"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    std::optional<std::string> printModel(const MoxReader::File& file) const;
    std::optional<std::string> findFlaw(const MoxReader::File& file, Terminal& terminal) const;
    void printVerdict(const std::optional<std::string>& flaw, Terminal& terminal) const;

    std::string path_;
    bool quick_ = false;
};

} // namespace MoxTool
