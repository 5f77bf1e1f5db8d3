#pragma once

#include "../common/Command.h"
#include "../common/JsonStream.h"
#include "CheckReport.h"

#include <string>
#include <vector>

namespace MoxTool {

/// `mox check`: whether files are whole, rule by rule.
class CheckCommand : public Command {
public:
    std::string name() const override { return "check"; }
    std::string summary() const override { return "Find every damage of files, by numbered rules"; }
    std::optional<Example> example() const override {
        return Example{"mox check bracket.mox", "every damage of it, rule by rule"};
    }
    void addOptions(CommandLine& line) override;
    /// @return 0 whole, 1 warnings, 2 errors, 3 unreadable; the highest of all files.
    int run(Terminal& terminal) override;
    int failureCode() const override { return static_cast<int>(Verdict::Unreadable); }

private:
    int runRules() const;
    Verdict runFile(const std::string& path, JsonStream* json, Terminal& terminal) const;

    std::vector<std::string> paths_;
    bool listRules_ = false;
    bool asJson_ = false;
    bool strict_ = false;
    std::size_t limit_ = 20;
};

} // namespace MoxTool
