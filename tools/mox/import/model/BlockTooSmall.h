#pragma once

#include <cstdint>

namespace MoxTool {

/// Thrown before a dataset is added that would fill a block by itself: an import then begins again with larger blocks,
/// since the blocks after an Index Block could lie too low otherwise.
struct BlockTooSmall {
    std::uint32_t safeSize; ///< In bytes.
};

} // namespace MoxTool
