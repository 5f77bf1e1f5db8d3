#pragma once

#include "../common/NumberFile.h"
#include "Tolerance.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace MoxTool {

/// How the numbers of two datasets of one shape differ.
struct NumberDifference {
    std::size_t differing = 0; ///< Numbers beyond the tolerance.
    std::size_t count = 0;     ///< Numbers in all.
    std::size_t row = 0;       ///< The row of the worst one, from 0; see Tolerance::excess().
    std::size_t component = 0; ///< Its component, from 0.
    double a = 0;              ///< The worst one in the first file.
    double b = 0;              ///< And in the second.
    bool areFloats = false;    ///< Whether a and b are 32-bit floats rather than integers.
};

/// Compares floats by the tolerance and integers exactly.
/// @param width Components of each item.
/// @return empty if the numbers are equal. The first of several equally bad numbers is the worst.
/// @pre a and b have the same type and the same count.
std::optional<NumberDifference> compareNumbers(const Numbers& a, const Numbers& b, std::uint8_t width,
                                               const Tolerance& tolerance);

} // namespace MoxTool
