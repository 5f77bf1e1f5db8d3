#include "meshDatasets.h"

#include "DatasetNames.h"

#include <MoxReader/Format.h>

#include <algorithm>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Node;

namespace {

bool isConnectivity(const Dataset& dataset) {
    return MoxReader::Format::isConnectivityType(dataset.variableType) &&
           dataset.name != DatasetNames::PartElements;
}

bool hasType(const Dataset& dataset, MoxReader::Format::VariableType type) {
    return MoxReader::Format::isType(dataset.variableType, type);
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
    return findWithoutStep(geometry, [](const Dataset& dataset) {
        return hasType(dataset, MoxReader::Format::VariableType::Coordinates);
    });
}

const Dataset* findConnectivity(const Node& geometry) {
    return findWithoutStep(geometry, isConnectivity);
}

const Dataset* findPolylength(const Node& geometry) {
    return findWithoutStep(geometry, [](const Dataset& dataset) {
        return hasType(dataset, MoxReader::Format::VariableType::Polylength);
    });
}

bool isComplete(const Node& geometry) {
    return findCoordinates(geometry) != nullptr && findConnectivity(geometry) != nullptr &&
           findPolylength(geometry) != nullptr;
}

int connectivityDimension(const Dataset& connectivity) {
    return MoxReader::Format::elementDimensions(connectivity.variableType);
}

} // namespace MoxTool
