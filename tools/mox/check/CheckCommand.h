#pragma once

#include "../common/Command.h"
#include "../common/JsonStream.h"
#include "CheckReport.h"

#include <MoxReader/Source.h>

#include <string>
#include <vector>

namespace MoxTool {

/// `mox check`: whether files are whole, rule by rule.
class CheckCommand : public Command {
public:
    std::string name() const override { return "check"; }
    std::string summary() const override { return "Find all damage in files, by numbered rules"; }
    std::optional<Example> example() const override {
        return Example{"mox check bracket.mox", "all damage in it, rule by rule"};
    }
    void addOptions(CommandLine& line) override;
    /// @return 0 whole, 1 warnings, 2 errors, 3 unreadable; the highest of all files.
    int run(Terminal& terminal) override;
    int failureCode() const override { return static_cast<int>(Verdict::Unreadable); }

private:
    int runRules() const;
    Verdict runFile(const std::string& path, JsonStream* json, Terminal& terminal);
    void noteKind(const std::string& path, MoxReader::Source& source, Terminal& terminal) const;
    bool showsTable() const;
    void print(const std::string& path, const FindingList& findings, const Terminal& terminal);

    std::vector<std::string> paths_;
    std::vector<FileVerdict> verdicts_; ///< Of the files that have been checked.
    bool listRules_ = false;
    bool asJson_ = false;
    bool strict_ = false;
    bool onlyTable_ = false;
    bool quiet_ = false;
    bool hasPrinted_ = false; ///< Whether findings stand on stdout.
    std::size_t limit_ = 20;
};

} // namespace MoxTool
