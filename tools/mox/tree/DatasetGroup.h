#pragma once

#include "../common/ModelSteps.h"

#include <MoxReader/Model.h>

#include <compare>
#include <string>
#include <vector>

namespace MoxTool {

/// The numbers of a dataset, in words.
struct NumbersText {
    std::string shape;  ///< Their type, items and components; empty if a link leads nowhere.
    std::string origin; ///< For a link, where they are, or why they can't be found.

    auto operator<=>(const NumbersText&) const = default;
};

/// Datasets of one geometry that differ in nothing but their step.
struct DatasetGroup {
    std::vector<const MoxReader::Dataset*> members; ///< At least one, in order of their steps.
    NumbersText numbers;                            ///< Those of all members.

    const MoxReader::Dataset& first() const { return *members.front(); }
    /// The places of the steps, ascending; empty for a dataset without a step.
    std::vector<std::size_t> places(const ModelSteps& steps) const;
};

} // namespace MoxTool
