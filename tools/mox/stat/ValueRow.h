#pragma once

#include "ValueTally.h"

#include <MoxReader/Dataset.h>

#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// The values of datasets of one name, type and width, over all geometries, for one step or for all.
struct ValueRow {
    const MoxReader::Dataset* first;  ///< The first of the datasets.
    const MoxReader::Dataset* holder; ///< The one that has the numbers of the first.
    std::optional<std::size_t> step;  ///< The place of the step, if the row is for one.
    std::vector<ValueTally> components;

    /// What tells the component's name (see columnNames()) apart from those of the others, such as x or xy, or
    /// else its number; empty if there is only one.
    std::string componentName(std::size_t component) const;
};

} // namespace MoxTool
