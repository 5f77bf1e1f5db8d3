#pragma once

#include "../common/Command.h"
#include "../common/JsonStream.h"
#include "../common/StepChoice.h"
#include "FileStatistics.h"
#include "ValueRow.h"

#include <functional>
#include <string>
#include <vector>

namespace MoxTool {

class NumberFile;

/// `mox stat`: where the bytes of a file go, and what its numbers are.
class StatCommand : public Command {
public:
    std::string name() const override { return "stat"; }
    std::string summary() const override {
        return "Show where the bytes of files go, or what their numbers are";
    }
    std::optional<Example> example() const override {
        return Example{"mox stat bracket.mox", "where its bytes go"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void checkOptions() const;
    void printFile(const std::string& path, Terminal& terminal) const;
    void writeFile(JsonStream& json, const std::string& path, Terminal& terminal) const;
    std::vector<ValueRow> survey(NumberFile& file, const ModelSteps& steps, bool bySteps,
                                 Terminal& terminal) const;
    void printHeading(const std::string& path, const Terminal& terminal) const;
    void printBlocks(const TallyList& blocks) const;
    void printDatasets(const char* title, const TallyList& groups,
                       const std::function<std::string(const std::string&)>& titleOf) const;
    void printLinks(const Tally& total) const;
    std::string bytes(std::uint64_t count) const;
    std::string bytes(double count) const;

    std::vector<std::string> paths_;
    StepChoice chosen_;
    std::size_t rows_ = 20;
    bool exact_ = false;
    bool values_ = false;
    bool bySteps_ = false;
    bool asJson_ = false;
};

} // namespace MoxTool
