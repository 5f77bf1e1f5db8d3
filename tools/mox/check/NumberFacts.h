#pragma once

#include <MoxReader/Dataset.h>
#include <MoxReader/StreamReader.h>

#include <cstdint>
#include <unordered_map>

namespace MoxTool {

/// What is to be known of the numbers of a dataset.
struct NumberFacts {
    std::uint64_t items = 0;
    bool wereRead = false;       ///< If not, all that follows is 0.
    std::uint64_t notFinite = 0; ///< Floats that are infinite or no numbers.
    std::uint32_t highest = 0;   ///< Of unsigned numbers.
    std::uint64_t sum = 0;       ///< Of unsigned numbers.
};

/// By the dataset that holds them.
using FactsByHolder = std::unordered_map<const MoxReader::Dataset*, NumberFacts>;

/// Looks at all numbers of a dataset, with a constant amount of memory beside the stream's block.
/// @param holder Of sound shape, and inside one block of the stream.
/// @throws MoxReader::Error
NumberFacts readFacts(MoxReader::StreamReader& heavy, const MoxReader::Dataset& holder);

} // namespace MoxTool
