#pragma once

#include "../common/Command.h"
#include "../parts/FileJoin.h"

#include <string>

namespace MoxTool {

/// `mox join OUT.mox IN.mox...`: one file with the trees and the numbers of several.
class JoinCommand : public Command {
public:
    std::string name() const override { return "join"; }
    std::string summary() const override {
        return "Join files into one, without decompressing their numbers";
    }
    std::optional<Example> example() const override {
        return Example{"mox join whole.mox part.*.mox", "one file from those of many processes"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    JoinRequest request_;
    bool check_ = false;
    bool force_ = false;
    bool verbose_ = false;
};

} // namespace MoxTool
