#pragma once

#include "../common/Command.h"
#include "FileStatistics.h"

namespace MoxTool {

/// `mox stat`: where the bytes of a file go.
class StatCommand : public Command {
public:
    std::string name() const override { return "stat"; }
    std::string summary() const override { return "Show where the bytes of a file go"; }
    std::optional<Example> example() const override {
        return Example{"mox stat bracket.mox", "where its bytes go"};
    }
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void printBlocks(const TallyList& blocks) const;
    void printDatasets(const char* title, const TallyList& groups) const;
    void printLinks(const Tally& total) const;
    TallyList firstRows(const TallyList& groups) const;
    std::string bytes(std::uint64_t count) const;
    std::string bytes(double count) const;

    std::string path_;
    std::size_t rows_ = 20;
    bool exact_ = false;
};

} // namespace MoxTool
