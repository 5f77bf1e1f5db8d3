#pragma once

#include "../common/Command.h"

#include <MoxReader/RawIndex.h>
#include <MoxReader/Source.h>

#include <memory>
#include <string>

namespace MoxTool {

/// `mox salvage`: extracts the blocks of a file that was never closed, is cut off or is damaged.
class SalvageCommand : public Command {
public:
    std::string name() const override { return "salvage"; }
    std::string summary() const override {
        return "Get out of a damaged file what can still be decompressed";
    }
    std::optional<Example> example() const override {
        return Example{"mox salvage crashed.mox saved", "what is left of a file that was never closed"};
    }
    void addOptions(CommandLine& line) override;
    /// @return 0; failures give 1, among them a file that is whole and one of which nothing is left.
    int run(Terminal& terminal) override;

private:
    void checkFront(const MoxReader::RawIndex& index) const;
    std::string findState(const std::shared_ptr<MoxReader::Source>& source, const MoxReader::RawIndex& index,
                          Terminal& terminal) const;
    void salvage(MoxReader::Source& source, const MoxReader::RawIndex& index, const std::string& state,
                 Terminal& terminal) const;

    std::string path_;
    std::string folder_;
    bool force_ = false;
};

} // namespace MoxTool
