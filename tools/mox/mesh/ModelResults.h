#pragma once

#include "../common/ModelStep.h"
#include "ModelMesh.h"
#include "ResultPlace.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// One result: the datasets of one name, type and meaning, over all steps and parts.
struct ResultField {
    /// The place of the step; and of the node group, or of the part for results on elements.
    using Source = std::pair<std::size_t, std::size_t>;
    /// Stands for the step of a result that has none and is the same in all steps.
    static constexpr std::size_t NoStep = static_cast<std::size_t>(-1);

    ResultPlace place = ResultPlace::Nodes;
    std::string name;
    std::uint32_t variableType = 0;
    std::size_t width = 1;
    bool isInteger = false;
    bool isStatic = false; ///< It has no steps.
    /// The variables of the columns from the first on, by the attributes "Component 1" and so on; empty if
    /// there are none.
    std::vector<std::string> components;
    std::map<Source, const MoxReader::Dataset*> sources; ///< The holders of the numbers.
    std::set<std::size_t> targets;                       ///< All targets that have numbers in any step.

    /// The numbers in a step; null if the target has none there.
    const MoxReader::Dataset* source(std::size_t step, std::size_t target) const {
        const auto found = sources.find({isStatic ? NoStep : step, target});
        return found == sources.end() ? nullptr : found->second;
    }
    /// Whether any target has numbers in a step.
    bool stands(std::size_t step) const;
};

/// All results of the parts of a mesh, and their steps in the order in which they were written.
struct ModelResults {
    std::vector<ModelStep> steps;
    std::vector<ResultField> fields;
};

/// The number of node groups or of parts, whichever have the results of a place.
std::size_t targetCount(const ModelMesh& mesh, ResultPlace place);
/// The number of nodes of a group, or of elements of a part.
std::size_t itemsOf(const ModelMesh& mesh, ResultPlace place, std::size_t target);

} // namespace MoxTool
