#pragma once

#include <cstdint>

namespace MoxTool {

/// What a group of datasets, or of blocks, takes.
struct Tally {
    std::uint64_t count = 0;   ///< Datasets with numbers of their own, or blocks.
    std::uint64_t links = 0;   ///< Datasets that share the numbers of others.
    std::uint64_t content = 0; ///< Bytes before compression.
    double stored = 0;         ///< Bytes in the file.
    /// Bytes before compression that the links would take with numbers of their own.
    std::uint64_t shared = 0;

    Tally& operator+=(const Tally& other);
};

} // namespace MoxTool
