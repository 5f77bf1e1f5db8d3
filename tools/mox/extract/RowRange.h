#pragma once

#include "NumberTable.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>

namespace MoxTool {

/// Some rows of a dataset, one after the other. Rows are counted from 0.
class RowRange {
public:
    /// All rows.
    RowRange() = default;

    /// @param text "7", "1:100" with both ends taken, "1:" or ":100".
    /// @return nothing if the text is none of these, or if the last row is before the first.
    static std::optional<RowRange> parse(std::string_view text);

    std::size_t first() const { return first_; }

    /// Drops all other rows. The range may end after the last row.
    void cut(NumberTable& table) const;

private:
    std::size_t first_ = 0;
    std::size_t last_ = std::numeric_limits<std::size_t>::max() - 1;
};

} // namespace MoxTool
