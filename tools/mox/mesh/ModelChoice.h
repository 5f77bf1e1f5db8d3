#pragma once

#include "ModelSelection.h"

#include <MoxReader/Model.h>

#include <string>
#include <vector>

namespace MoxTool {

/// Which parts and results of a model the user wants.
class ModelChoice {
public:
    /// @param selection Must outlive this object.
    /// @throws Failure if a path leads nowhere.
    ModelChoice(const MoxReader::Model& model, const ModelSelection& selection);

    bool takesNode(const MoxReader::Node& node) const { return takenNodes_[node.id - 1]; }
    /// Ids of nodes and elements always go along.
    bool takesDataset(const MoxReader::Dataset& dataset) const;

    /// @throws Failure if no dataset of the taken parts has a name that fits one of the patterns.
    void requireMatches(const MoxReader::Model& model) const;

private:
    const ModelSelection& selection_;
    std::vector<bool> takenNodes_;
};

} // namespace MoxTool
