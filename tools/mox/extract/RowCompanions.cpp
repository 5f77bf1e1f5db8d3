#include "RowCompanions.h"

#include "../common/NodePaths.h"
#include "../common/datasetText.h"
#include "../common/datasetTitle.h"
#include "../mesh/DatasetNames.h"
#include "../mesh/meshDatasets.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

constexpr std::size_t Axes = 3;

const Dataset* findIds(const Node& geometry, ResultPlace place) {
    const auto* name = place == ResultPlace::Nodes ? DatasetNames::NodeIds : DatasetNames::ElementIds;
    const auto& datasets = geometry.geometry()->datasets;
    const auto found = std::ranges::find_if(datasets, [&](const Dataset& dataset) {
        return dataset.name == name && dataset.step.empty() && resultPlaceOf(dataset) == place;
    });
    return found == datasets.end() ? nullptr : &*found;
}

// A row of the mesh's own datasets is one, too.
ResultPlace placeIn(const Node& geometry, const Dataset& dataset) {
    if (&dataset == findCoordinates(geometry)) {
        return ResultPlace::Nodes;
    }
    return &dataset == findPolylength(geometry) ? ResultPlace::Elements : resultPlaceOf(dataset);
}

NumberTable pointTable(std::vector<float> points) {
    return {{"x", "y", "z"}, std::move(points), Axes};
}

} // namespace

RowCompanions::RowCompanions(NumberFile& file, const Node& geometry, const Dataset& dataset)
    : file_(file), geometry_(geometry), dataset_(dataset), place_(placeIn(geometry, dataset)) {}

NumberTable RowCompanions::ids() const {
    requirePlace("--ids");
    const auto* name = place_ == ResultPlace::Nodes ? DatasetNames::NodeIds : DatasetNames::ElementIds;
    NumberTable table{{"id"}, readIntegers(findIds(geometry_, place_), name), 1};
    requireRows(table, name);
    return table;
}

NumberTable RowCompanions::coordinates() const {
    requirePlace("--coordinates");
    auto table = place_ == ResultPlace::Nodes ? pointTable(readPoints()) : centres();
    requireRows(table, DatasetNames::Coordinates);
    return table;
}

NumberTable RowCompanions::centres() const {
    const auto points = readPoints();
    const std::vector<std::uint32_t> nodes =
        readIntegers(findConnectivity(geometry_), DatasetNames::Connectivity);
    std::vector<float> centres;
    auto rest = std::span(nodes);
    for (const auto length : readIntegers(findPolylength(geometry_), DatasetNames::Polylength)) {
        if (length == 0 || length > rest.size()) {
            fail("its elements and their nodes contradict each other; mox check lists all damage");
        }
        addCentre(centres, points, rest.first(length));
        rest = rest.subspan(length);
    }
    return pointTable(std::move(centres));
}

void RowCompanions::addCentre(std::vector<float>& centres, const std::vector<float>& points,
                              std::span<const std::uint32_t> element) const {
    std::array<double, Axes> sum{};
    for (const auto node : element) {
        if (node >= points.size() / Axes) {
            fail("its elements and their nodes contradict each other; mox check lists all damage");
        }
        for (std::size_t axis = 0; axis < Axes; ++axis) {
            sum.at(axis) += points[node * Axes + axis];
        }
    }
    for (const auto part : sum) {
        centres.push_back(static_cast<float>(part / static_cast<double>(element.size())));
    }
}

std::vector<float> RowCompanions::readPoints() const {
    const auto* dataset = findCoordinates(geometry_);
    const bool isThere = dataset != nullptr && file_.holder(*dataset).width == Axes;
    auto numbers = isThere ? file_.read(*dataset) : Numbers{};
    if (!isThere || !std::holds_alternative<std::vector<float>>(numbers)) {
        fail("has no coordinates of three columns");
    }
    return std::get<std::vector<float>>(std::move(numbers));
}

std::vector<std::uint32_t> RowCompanions::readIntegers(const Dataset* dataset, const char* name) const {
    auto numbers = dataset == nullptr ? Numbers{} : file_.read(*dataset);
    if (!std::holds_alternative<std::vector<std::uint32_t>>(numbers)) {
        fail(fmt::format("has no \"{}\" of integers", name));
    }
    return std::get<std::vector<std::uint32_t>>(std::move(numbers));
}

std::string RowCompanions::title() const {
    return datasetTitle(dataset_, ModelSteps(file_.model()));
}

void RowCompanions::requirePlace(const char* option) const {
    if (place_ == ResultPlace::Nowhere) {
        fail(fmt::format("the rows of {} are neither nodes nor elements, so there is nothing for {}", title(),
                         option));
    }
}

void RowCompanions::requireRows(const NumberTable& table, const char* name) const {
    const auto rows = itemCount(file_.holder(dataset_));
    if (table.rows() != rows) {
        fail(fmt::format("{} has {} rows, but there are {} of {}", title(), rows, table.rows(), name));
    }
}

void RowCompanions::fail(const std::string& reason) const {
    throw Failure(file_.path(), NodePaths(file_.model().nodes()).of(geometry_.id) + ": " + reason);
}

} // namespace MoxTool
