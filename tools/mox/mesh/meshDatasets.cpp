#include "meshDatasets.h"

#include <algorithm>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Node;

namespace {

// Numbers of MoxReader::Format::VariableTypes.
constexpr std::uint32_t Coordinates = 1;
constexpr std::uint32_t FirstConnectivity = 4;
constexpr std::uint32_t LastConnectivity = 6;
constexpr std::uint32_t Polylength = 9;
constexpr std::uint32_t FirstNodal = 12;
constexpr std::uint32_t LastNodal = 15;
constexpr std::uint32_t FirstElemental = 16;
constexpr std::uint32_t LastElemental = 19;

bool isWithin(const Dataset& dataset, std::uint32_t first, std::uint32_t last) {
    return dataset.variableType >= first && dataset.variableType <= last;
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
    return findWithoutStep(geometry,
                           [](const Dataset& dataset) { return dataset.variableType == Coordinates; });
}

const Dataset* findConnectivity(const Node& geometry) {
    return findWithoutStep(geometry, [](const Dataset& dataset) {
        return isWithin(dataset, FirstConnectivity, LastConnectivity) && dataset.name != "Part Elements";
    });
}

const Dataset* findPolylength(const Node& geometry) {
    return findWithoutStep(geometry,
                           [](const Dataset& dataset) { return dataset.variableType == Polylength; });
}

bool isComplete(const Node& geometry) {
    return findCoordinates(geometry) != nullptr && findConnectivity(geometry) != nullptr &&
           findPolylength(geometry) != nullptr;
}

int connectivityDimension(const Dataset& connectivity) {
    return static_cast<int>(connectivity.variableType - FirstConnectivity) + 1;
}

ResultPlace resultPlaceOf(const Dataset& dataset) {
    if (isWithin(dataset, FirstNodal, LastNodal))
        return ResultPlace::Nodes;
    return isWithin(dataset, FirstElemental, LastElemental) ? ResultPlace::Elements : ResultPlace::Nowhere;
}

} // namespace MoxTool
