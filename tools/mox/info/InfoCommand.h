#pragma once

#include "../common/Command.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <optional>
#include <string>
#include <vector>

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
    int runFile(const std::string& path, Terminal& terminal) const;
    std::optional<std::string> printModel(const MoxReader::File& file) const;
    std::optional<std::string> findModelFlaw(const MoxReader::File& file) const;
    std::optional<std::string> findFlaw(const MoxReader::File& file, Terminal& terminal) const;
    void printVerdict(const std::optional<std::string>& flaw, Terminal& terminal) const;

    std::vector<std::string> paths_;
    bool quick_ = false;
    bool quiet_ = false;
};

} // namespace MoxTool
