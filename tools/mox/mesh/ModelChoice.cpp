#include "ModelChoice.h"

#include "../common/Failure.h"
#include "../common/NodePaths.h"
#include "../common/matchesGlob.h"
#include "../common/visibleText.h"
#include "DatasetNames.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Model;
using MoxReader::Node;

ModelChoice::ModelChoice(const Model& model, const ModelSelection& selection)
    : selection_(selection), takenNodes_(model.nodes().size(), selection.parts.empty()) {
    const NodePaths paths(model.nodes());
    for (const auto& part : selection.parts) {
        const auto* node = paths.find(part);
        if (node == nullptr) {
            throw Failure(selection.input, paths.whyNone(part));
        }
        takenNodes_[node->id - 1] = true;
    }
    // A parent stands before its children.
    for (const auto& node : model.nodes()) {
        if (node.parent != 0 && takenNodes_[node.parent - 1]) {
            takenNodes_[node.id - 1] = true;
        }
    }
}

bool ModelChoice::takesDataset(const Dataset& dataset) const {
    const auto& patterns = selection_.datasets;
    const bool isId = dataset.name == DatasetNames::NodeIds || dataset.name == DatasetNames::ElementIds;
    return patterns.empty() || isId || std::ranges::any_of(patterns, [&](const auto& pattern) {
               return matchesGlob(pattern, dataset.name);
           });
}

void ModelChoice::requireMatches(const Model& model) const {
    for (const auto& pattern : selection_.datasets) {
        const bool isMatched = std::ranges::any_of(model.nodes(), [&](const Node& node) {
            return node.geometry() != nullptr && takesNode(node) &&
                   std::ranges::any_of(node.geometry()->datasets, [&](const Dataset& dataset) {
                       return matchesGlob(pattern, dataset.name);
                   });
        });
        if (!isMatched) {
            throw Failure(selection_.input,
                          fmt::format("what is chosen has no dataset \"{}\"; mox tree lists them",
                                      visibleText(pattern)));
        }
    }
}

} // namespace MoxTool
