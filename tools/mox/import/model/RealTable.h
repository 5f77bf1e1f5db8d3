#pragma once

#include "FloatNarrowing.h"

#include <cstddef>
#include <span>
#include <vector>

namespace MoxTool {

/// A table of floats that is filled column by column from doubles.
class RealTable {
public:
    /// All zeros.
    RealTable(std::size_t rows, std::size_t columns) : width_(columns), cells_(rows * columns) {}

    /// @param values One for each row.
    void setColumn(std::size_t column, std::span<const double> values, FloatNarrowing& narrowing);

    std::size_t columns() const { return width_; }
    std::size_t rows() const { return cells_.size() / width_; }
    /// Row by row.
    const std::vector<float>& numbers() const { return cells_; }

private:
    std::size_t width_;
    std::vector<float> cells_;
};

} // namespace MoxTool
