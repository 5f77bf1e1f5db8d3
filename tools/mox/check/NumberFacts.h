#pragma once

#include <MoxReader/Dataset.h>
#include <MoxReader/StreamReader.h>

#include <cstdint>
#include <unordered_map>

namespace MoxTool {

/// What is known about the numbers of a dataset.
struct NumberFacts {
    std::uint64_t items = 0;
    bool wereRead = false;       ///< If false, all that follows is 0.
    std::uint64_t notFinite = 0; ///< Floats that are infinite or not a number.
    std::uint32_t highest = 0;   ///< The largest unsigned number.
    std::uint64_t sum = 0;       ///< The sum of the unsigned numbers.
};

/// By the dataset that holds them.
using FactsByHolder = std::unordered_map<const MoxReader::Dataset*, NumberFacts>;

/// Reads all numbers of a dataset, with constant memory besides the stream's block.
/// @param holder A dataset of sound shape, inside one block of the stream.
/// @throws MoxReader::Error
NumberFacts readFacts(MoxReader::StreamReader& heavy, const MoxReader::Dataset& holder);

} // namespace MoxTool
