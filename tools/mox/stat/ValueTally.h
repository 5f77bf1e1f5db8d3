#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace MoxTool {

/// Where a number stands.
struct ValuePlace {
    static constexpr std::size_t NoStep = static_cast<std::size_t>(-1);

    std::uint32_t node = 0;    ///< The id of the geometry.
    std::uint32_t row = 0;     ///< The node or element, from 0.
    std::size_t step = NoStep; ///< The place of the step, from 0.
};

/// What the numbers of a component are. Least, greatest and mean are those of the finite numbers, and mean
/// nothing if there are none.
struct ValueTally {
    std::uint64_t count = 0; ///< All numbers.
    std::uint64_t nans = 0;
    std::uint64_t infinities = 0;
    double sum = 0;
    double least = 0;
    double greatest = 0;
    ValuePlace leastAt; ///< The first of several.
    ValuePlace greatestAt;

    std::uint64_t finite() const { return count - nans - infinities; }
    double mean() const { return sum / static_cast<double>(finite()); }

    void add(double number, std::uint32_t row) {
        ++count;
        if (!std::isfinite(number)) {
            ++(std::isnan(number) ? nans : infinities);
            return;
        }
        const bool isFirst = finite() == 1;
        sum += number;
        if (isFirst || number < least) {
            least = number;
            leastAt.row = row;
        }
        if (isFirst || number > greatest) {
            greatest = number;
            greatestAt.row = row;
        }
    }
    /// Adds the tally of one dataset.
    void add(const ValueTally& other, std::uint32_t node, std::size_t step);
};

} // namespace MoxTool
