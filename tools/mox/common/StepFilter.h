#pragma once

#include "StepChoice.h"

#include <MoxReader/Model.h>

#include <set>
#include <string>

namespace MoxTool {

/// Which datasets of a model are those of the chosen steps.
class StepFilter {
public:
    /// @param path The file, for messages.
    /// @throws Failure if a choice is made and the model has no such step.
    StepFilter(const StepChoice& choice, const MoxReader::Model& model, const std::string& path);

    /// Whether a dataset is of a chosen step. One without a step is not; without a choice all are.
    bool takes(const MoxReader::Dataset& dataset) const;
    /// The names of the chosen steps; empty without a choice.
    const std::set<std::string>& names() const { return names_; }

private:
    std::set<std::string> names_;
};

} // namespace MoxTool
