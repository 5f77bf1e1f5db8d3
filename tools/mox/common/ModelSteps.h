#pragma once

#include "ModelStep.h"

#include <MoxReader/Model.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace MoxTool {

/// The steps of a model in the order in which they were written. A step's number is its place in this list,
/// from 1.
class ModelSteps {
public:
    explicit ModelSteps(const MoxReader::Model& model);
    /// @param steps In their order, each with a name of its own.
    explicit ModelSteps(std::vector<ModelStep> steps);

    const std::vector<ModelStep>& all() const { return steps_; }
    /// The place of a step, from 0.
    std::optional<std::size_t> find(const std::string& name) const;
    /// The number of a step that the model has.
    std::size_t numberOf(const std::string& name) const { return places_.at(name) + 1; }

private:
    std::vector<ModelStep> steps_;
    std::unordered_map<std::string, std::size_t> places_;
};

} // namespace MoxTool
