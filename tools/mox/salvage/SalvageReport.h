#pragma once

#include "../common/jsonValue.h"
#include "BlockWalk.h"

#include <MoxReader/RawIndex.h>

#include <cstdio>
#include <string>
#include <vector>

namespace MoxTool {

/// What the walk through a damaged file has saved and what it could not.
struct SalvageReport {
    std::string file;  ///< As the person gave it.
    std::string state; ///< What is wrong with the file, in words.
    std::uint64_t fileSize = 0;
    std::vector<SalvagedBlock> blocks;
    std::vector<SalvageGap> gaps;
    std::vector<std::string> lost; ///< One line each.

    SalvageReport(std::string file, std::string state, const MoxReader::RawIndex& index,
                  const BlockWalk& walk);

    /// Lines for a person.
    void print(std::FILE* out) const;
    Json toJson() const;

private:
    void listLoss(const MoxReader::RawIndex& index);
};

} // namespace MoxTool
