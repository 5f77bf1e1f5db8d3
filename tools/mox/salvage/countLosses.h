#pragma once

#include "SalvagedBlock.h"

#include <MoxReader/RawIndex.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// What the index says about one stream, and what was saved of it.
struct StreamLoss {
    std::string name;
    std::size_t blocks = 0;
    std::size_t missing = 0;  ///< Blocks that were not saved whole.
    std::size_t begun = 0;    ///< Those of them that were saved in part.
    std::uint64_t unread = 0; ///< Stored bytes of the missing blocks that gave no content.
};

/// One entry for each stream that the index names, lost or not, in the order of their first blocks.
/// @param saved In the order of the file.
std::vector<StreamLoss> countLosses(const MoxReader::RawIndex& index,
                                    const std::vector<SalvagedBlock>& saved);

} // namespace MoxTool
