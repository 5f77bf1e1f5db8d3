#pragma once

#include <cstdint>
#include <string>

namespace MoxTool {

/// What a person said to name one dataset.
struct DatasetChoice {
    std::string path;            ///< Of the node; used if the id is 0.
    std::string separator = "/"; ///< Between the names in the path.
    std::uint32_t id = 0;        ///< Of the node; 0 stands for none.
    std::string name;            ///< Of the dataset.
    std::string step;            ///< Empty for the dataset without a step.
};

} // namespace MoxTool
