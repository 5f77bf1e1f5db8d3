#pragma once

#include "BlockAttempt.h"

#include <cstdint>
#include <string>

namespace MoxTool {

/// A block of which at least the beginning could be inflated. Its content is in a file of its own.
struct SalvagedBlock {
    std::uint64_t number; ///< From 1, in the order of the saved blocks.
    BlockAttempt extent;

    bool isWhole() const { return extent.isWhole(); }
    /// block-0001.raw and so on; block-0001.part.raw for one that is cut off, block-0001.damaged.raw for one
    /// that is damaged.
    std::string fileName() const;
};

} // namespace MoxTool
