#pragma once

#include <Qel/Mox2/DatasetType.h>

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// One result dataset of the model and the variables of the file that it is made from.
struct ResultDataset {
    std::string name;       ///< Its name in the model; unique among the results of a geometry.
    std::string wantedName; ///< The name that it would have if it were not taken.
    Qel::Mox2::DatasetType type;
    std::size_t width; ///< Columns: 1, 3 or 6.
    /// For each column, starting with the first; a vector of two has no third.
    std::vector<std::size_t> variables;
};

} // namespace MoxTool
