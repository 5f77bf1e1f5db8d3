#pragma once

#include "../common/Command.h"
#include "DatasetChoice.h"
#include "NumberTable.h"

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// `mox extract FILE --node PATH --dataset NAME`: the numbers of a dataset, or of all.
class ExtractCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void requireChoice() const;
    std::string formatName() const;
    void extractOne(NumberFile& file) const;
    std::vector<NumberTable> readTables(NumberFile& file) const;
    void requireRow(std::size_t first, std::size_t count) const;

    std::string input_;
    DatasetChoice choice_;
    std::string format_; ///< Empty if the name of the output decides.
    std::string output_; ///< Empty or "-" for stdout.
    std::string folder_; ///< Not empty if all datasets are wanted.
    std::string rows_;   ///< Empty for all.
    bool withIds_ = false;
    bool withCoordinates_ = false;
    bool withoutHeader_ = false;
    bool overwrite_ = false;
    bool noLimit_ = false;
};

} // namespace MoxTool
