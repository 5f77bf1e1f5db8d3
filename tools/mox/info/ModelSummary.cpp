#include "ModelSummary.h"

#include "../common/treeLevels.h"

#include <algorithm>
#include <unordered_set>

namespace MoxTool {

ModelSummary::ModelSummary(const MoxReader::Model& model) {
    const auto levelOfEach = treeLevels(model);
    levels = *std::max_element(levelOfEach.begin(), levelOfEach.end());
    std::unordered_set<std::string> known;
    for (const auto& node : model.nodes()) {
        ++nodesByType[node.typeName];
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            ++datasets;
            links += dataset.isLink ? 1 : 0;
            if (!dataset.step.empty() && known.insert(dataset.step).second) {
                steps.push_back(dataset.step);
            }
        }
    }
}

} // namespace MoxTool
