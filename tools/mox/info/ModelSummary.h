#pragma once

#include <MoxReader/Model.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace MoxTool {

/// The contents of a model, in numbers.
struct ModelSummary {
    std::map<std::string, std::uint64_t> nodesByType; ///< A root that was never set has the empty type.
    std::uint32_t levels = 0;                         ///< 1 for a root alone.
    std::uint64_t datasets = 0;                       ///< Links included.
    std::uint64_t links = 0;
    std::vector<std::string> steps; ///< Their names, each once, in order of their first use.

    explicit ModelSummary(const MoxReader::Model& model);
};

} // namespace MoxTool
