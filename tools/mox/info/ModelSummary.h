#pragma once

#include "../common/ModelSteps.h"

#include <MoxReader/Model.h>

#include <cstdint>
#include <map>
#include <string>

namespace MoxTool {

/// The contents of a model, in numbers.
struct ModelSummary {
    std::map<std::string, std::uint64_t> nodesByType; ///< A root that was never set has the empty type.
    std::uint32_t levels = 0;                         ///< 1 for a root alone.
    std::uint64_t datasets = 0;                       ///< Links included.
    std::uint64_t links = 0;
    ModelSteps steps;
    std::uint64_t meshNodes = 0; ///< Rows of all coordinates; those of links count once.
    std::uint64_t elements = 0;  ///< Of all geometries.

    explicit ModelSummary(const MoxReader::Model& model);
};

} // namespace MoxTool
