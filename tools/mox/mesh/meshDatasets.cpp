#include "meshDatasets.h"

#include "DatasetNames.h"
#include "VariableTypes.h"

#include <algorithm>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Node;

namespace {

bool isConnectivity(const Dataset& dataset) {
    return dataset.variableType >= VariableTypes::FirstConnectivity &&
           dataset.variableType <= VariableTypes::LastConnectivity &&
           dataset.name != DatasetNames::PartElements;
}

bool hasType(const Dataset& dataset, std::uint32_t type) {
    return dataset.variableType == type;
}

template <typename Test>
const Dataset* findWithoutStep(const Node& geometry, Test test) {
    const auto& datasets = geometry.geometry()->datasets;
    const auto found = std::find_if(datasets.begin(), datasets.end(), [&test](const Dataset& dataset) {
        return dataset.step.empty() && test(dataset);
    });
    return found == datasets.end() ? nullptr : &*found;
}

} // namespace

const Dataset* findCoordinates(const Node& geometry) {
    return findWithoutStep(
        geometry, [](const Dataset& dataset) { return hasType(dataset, VariableTypes::Coordinates); });
}

const Dataset* findConnectivity(const Node& geometry) {
    return findWithoutStep(geometry, isConnectivity);
}

const Dataset* findPolylength(const Node& geometry) {
    return findWithoutStep(
        geometry, [](const Dataset& dataset) { return hasType(dataset, VariableTypes::Polylength); });
}

bool isComplete(const Node& geometry) {
    return findCoordinates(geometry) != nullptr && findConnectivity(geometry) != nullptr &&
           findPolylength(geometry) != nullptr;
}

int connectivityDimension(const Dataset& connectivity) {
    return static_cast<int>(connectivity.variableType - VariableTypes::FirstConnectivity) + 1;
}

} // namespace MoxTool
