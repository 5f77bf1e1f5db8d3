#pragma once

#include "../common/StepChoice.h"

#include <cstdint>
#include <string>

namespace MoxTool {

/// How the user named one dataset.
struct DatasetChoice {
    std::string path;     ///< The path of the node; used if the id is 0.
    std::uint32_t id = 0; ///< The id of the node; 0 stands for none.
    std::string name;     ///< The name of the dataset.
    StepChoice step;      ///< Its step; not made for the dataset without a step.
};

} // namespace MoxTool
