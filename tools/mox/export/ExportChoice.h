#pragma once

#include "ExportRequest.h"

#include <MoxReader/Model.h>

#include <string>
#include <vector>

namespace MoxTool {

/// Which parts and results of a model the user wants.
class ExportChoice {
public:
    /// @param request Must outlive this object.
    /// @throws Failure if a path leads nowhere.
    ExportChoice(const MoxReader::Model& model, const ExportRequest& request);

    bool takesNode(const MoxReader::Node& node) const { return takenNodes_[node.id - 1]; }
    /// Ids of nodes and elements always go along.
    bool takesDataset(const MoxReader::Dataset& dataset) const;

    /// @throws Failure if no dataset of the taken parts has a name that fits one of the patterns.
    void requireMatches(const MoxReader::Model& model) const;

private:
    const ExportRequest& request_;
    std::vector<bool> takenNodes_;
};

} // namespace MoxTool
