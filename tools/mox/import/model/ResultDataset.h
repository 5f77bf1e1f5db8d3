#pragma once

#include <Qel/Mox2/DatasetType.h>

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// One result dataset of the model and the variables of the file that it is made of.
struct ResultDataset {
    std::string name;       ///< In the model; unique among the results of a geometry.
    std::string wantedName; ///< What it would be named if no other had that name.
    Qel::Mox2::DatasetType type;
    std::size_t width;                  ///< Columns: 1, 3 or 6.
    std::vector<std::size_t> variables; ///< For each column from the first on; a vector of two has no third.
};

} // namespace MoxTool
