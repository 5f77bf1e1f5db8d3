#include "ModelSummary.h"

#include "../common/datasetText.h"
#include "../common/treeLevels.h"
#include "../mesh/meshDatasets.h"

#include <MoxReader/Error.h>

#include <algorithm>
#include <set>

namespace MoxTool {

namespace {

using MoxReader::Dataset;

// Null also for a link that leads nowhere, which is not this summary's to report.
const Dataset* holderOf(const MoxReader::Model& model, const Dataset* dataset) {
    try {
        return dataset == nullptr ? nullptr : &model.resolve(*dataset);
    } catch (const MoxReader::Error&) {
        return nullptr;
    }
}

} // namespace

ModelSummary::ModelSummary(const MoxReader::Model& model) : steps(model) {
    const auto levelOfEach = treeLevels(model);
    levels = *std::max_element(levelOfEach.begin(), levelOfEach.end());
    std::set<const Dataset*> coordinates;
    for (const auto& node : model.nodes()) {
        ++nodesByType[node.typeName];
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            ++datasets;
            links += dataset.isLink ? 1 : 0;
        }
        if (const auto* holder = holderOf(model, findCoordinates(node))) {
            meshNodes += coordinates.insert(holder).second ? itemCount(*holder) : 0;
        }
        if (const auto* holder = holderOf(model, findPolylength(node))) {
            elements += itemCount(*holder);
        }
    }
}

} // namespace MoxTool
