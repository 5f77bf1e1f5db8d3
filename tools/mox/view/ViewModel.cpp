#include "ViewModel.h"

#include "../common/utf8Path.h"
#include "../common/visibleText.h"
#include "../mesh/DatasetNames.h"
#include "SurfaceCollector.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>

namespace MoxTool {

namespace {

constexpr int LayoutVersion = 1;
constexpr auto Nowhere = std::numeric_limits<std::uint32_t>::max();

void putWord(std::string& bytes, std::uint32_t word) {
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>((word >> shift) & 0xFFU);
    }
}

void putFloat(std::string& bytes, double number) {
    putWord(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(number)));
}

std::string wordBytes(const std::vector<std::uint32_t>& words) {
    std::string bytes;
    bytes.reserve(words.size() * 4);
    for (const auto word : words) {
        putWord(bytes, word);
    }
    return bytes;
}

std::uint32_t placeIn(const std::vector<std::uint32_t>& list, std::size_t wanted) {
    const auto found = std::lower_bound(list.begin(), list.end(), wanted);
    return found != list.end() && *found == wanted ? static_cast<std::uint32_t>(found - list.begin())
                                                   : Nowhere;
}

bool isIdField(const ResultField& field) {
    return field.isInteger && (field.name == DatasetNames::NodeIds || field.name == DatasetNames::ElementIds);
}

Json optionalNumber(const std::optional<double>& number) {
    return number && std::isfinite(*number) ? Json(*number) : Json(nullptr);
}

const char* derivedText(DerivedNumber kind) {
    switch (kind) {
    case DerivedNumber::Magnitude:
        return "Magnitude";
    case DerivedNumber::VonMises:
        return "von Mises";
    case DerivedNumber::None:
        break;
    }
    return "";
}

std::size_t columnCount(const ViewField& field) {
    return field.columns.size() + (field.derived == DerivedNumber::None ? 0 : 1);
}

} // namespace

ViewModel::ViewModel(const ModelSelection& selection)
    : name_(utf8Of(pathOf(selection.input).filename())), source_(selection, name_) {
    explainErrors(selection.input, [this] {
        surface_ = SurfaceCollector(source_.mesh()).collect();
        findCentre();
        numberNodes();
        numberElements();
        chooseFields();
    });
}

// The page moves the centre to the origin, since floats draw well only there.
void ViewModel::findCentre() {
    std::array<double, 3> low, high;
    low.fill(std::numeric_limits<double>::infinity());
    high.fill(-std::numeric_limits<double>::infinity());
    for (const auto node : surface_.nodes) {
        const auto* point = source_.mesh().points.data() + 3 * std::size_t{node};
        if (!std::all_of(point, point + 3, [](float number) { return std::isfinite(number); })) {
            ++lostNodes_;
            continue;
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            low.at(axis) = std::min<double>(low.at(axis), point[axis]);
            high.at(axis) = std::max<double>(high.at(axis), point[axis]);
        }
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        centre_.at(axis) = low.at(axis) > high.at(axis) ? 0 : (low.at(axis) + high.at(axis)) / 2;
        extent_.at(axis) = low.at(axis) > high.at(axis) ? 0 : high.at(axis) - low.at(axis);
    }
}

void ViewModel::numberNodes() {
    for (const auto& group : source_.mesh().nodeGroups) {
        for (std::size_t row = 0; row < group.count; ++row) {
            nodes_.rows.push_back(static_cast<std::uint32_t>(row));
        }
    }
    readIds(DatasetNames::NodeIds, ResultPlace::Nodes, nodes_);
}

void ViewModel::numberElements() {
    for (const auto& block : source_.mesh().blocks) {
        for (const auto row : block.rows) {
            elements_.rows.push_back(static_cast<std::uint32_t>(row));
        }
    }
    readIds(DatasetNames::ElementIds, ResultPlace::Elements, elements_);
}

void ViewModel::readIds(const char* name, ResultPlace place, Numbers& numbers) {
    for (const auto row : numbers.rows) {
        numbers.ids.push_back(row + 1);
    }
    for (const auto& field : source_.results().fields) {
        if (!field.isStatic || field.place != place || !isIdField(field) || field.name != name) {
            continue;
        }
        const auto table = source_.reader().readAll(field, ResultField::NoStep);
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (!std::isnan(table[i])) {
                numbers.ids[i] = static_cast<std::uint32_t>(table[i]);
            }
        }
    }
}

void ViewModel::chooseFields() {
    for (const auto& field : source_.results().fields) {
        auto described = describeField(field, source_.wantedSteps());
        if (!isIdField(field) && !described.steps.empty()) {
            fields_.push_back(std::move(described));
        }
    }
}

std::vector<ViewModel::Array> ViewModel::meshArrays() const {
    const auto chosen = [](const std::vector<std::uint32_t>& all, const std::vector<std::uint32_t>& places) {
        std::string bytes;
        bytes.reserve(places.size() * 4);
        for (const auto place : places) {
            putWord(bytes, all[place]);
        }
        return bytes;
    };
    return {{"positions", positionBytes()},
            {"nodeRows", chosen(nodes_.rows, surface_.nodes)},
            {"nodeIds", chosen(nodes_.ids, surface_.nodes)},
            {"elementRows", chosen(elements_.rows, surface_.elements)},
            {"elementIds", chosen(elements_.ids, surface_.elements)},
            {"triangles", wordBytes(surface_.triangles.nodes)},
            {"triangleElements", wordBytes(surface_.triangles.elements)},
            {"edges", wordBytes(surface_.edges.nodes)},
            {"edgeElements", wordBytes(surface_.edges.elements)},
            {"outline", wordBytes(surface_.outline.nodes)},
            {"outlineElements", wordBytes(surface_.outline.elements)},
            {"lines", wordBytes(surface_.lines.nodes)},
            {"lineElements", wordBytes(surface_.lines.elements)},
            {"points", wordBytes(surface_.points.nodes)},
            {"pointElements", wordBytes(surface_.points.elements)}};
}

std::string ViewModel::positionBytes() const {
    std::string bytes;
    bytes.reserve(surface_.nodes.size() * 12);
    for (const auto node : surface_.nodes) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            putFloat(bytes, source_.mesh().points[3 * std::size_t{node} + axis]);
        }
    }
    return bytes;
}

ViewModel::ResultBlock ViewModel::resultBlock(const ViewField& field, std::size_t step) {
    const auto table = source_.reader().readAll(*field.field, step);
    const auto width = field.columns.size();
    const bool isNodal = field.field->place == ResultPlace::Nodes;
    const auto& shown = isNodal ? surface_.nodes : surface_.elements;
    ResultBlock block;
    block.bytes.reserve(columnCount(field) * 24 + shown.size() * width * 4);
    for (std::size_t column = 0; column < columnCount(field); ++column) {
        addRange(block, table, field, column);
    }
    for (const auto place : shown) {
        for (std::size_t column = 0; column < width; ++column) {
            putFloat(block.bytes, table[place * width + column]);
        }
    }
    return block;
}

// Least and greatest number of a column, the places of both on the surface, and the numbers of both items.
void ViewModel::addRange(ResultBlock& block, const std::vector<double>& table, const ViewField& field,
                         std::size_t column) const {
    const auto width = field.columns.size();
    const auto rows = table.size() / width;
    Extreme least, greatest;
    for (std::size_t row = 0; row < rows; ++row) {
        const auto* numbers = table.data() + row * width;
        const auto number = column < width ? numbers[column] : derivedNumber(field.derived, numbers);
        if (!std::isfinite(number)) {
            continue;
        }
        if (!(number >= least.number)) {
            least = {number, row};
        }
        if (!(number <= greatest.number)) {
            greatest = {number, row};
        }
    }
    const bool isNodal = field.field->place == ResultPlace::Nodes;
    const auto& shown = isNodal ? surface_.nodes : surface_.elements;
    const auto& ids = isNodal ? nodes_.ids : elements_.ids;
    putFloat(block.bytes, least.number);
    putFloat(block.bytes, greatest.number);
    for (const auto& extreme : {least, greatest}) {
        const bool exists = !std::isnan(extreme.number);
        putWord(block.bytes, exists ? placeIn(shown, extreme.row) : Nowhere);
        putWord(block.bytes, exists ? ids[extreme.row] : 0);
    }
    block.ranges.emplace_back(least.number, greatest.number);
}

std::string ViewModel::resultBlockName(std::size_t field, std::size_t step) {
    return step == ResultField::NoStep ? fmt::format("result-{}", field)
                                       : fmt::format("result-{}-{}", field, step);
}

Json ViewModel::description() const {
    const auto& mesh = source_.mesh();
    auto notes = Json::array();
    if (lostNodes_ > 0) {
        notes.push_back(fmt::format("{} nodes have coordinates that are no finite numbers; they are shown in "
                                    "the middle of the model",
                                    lostNodes_));
    }
    return {{"version", LayoutVersion},        {"name", visibleText(name_)}, {"nodes", mesh.nodeCount()},
            {"elements", mesh.elementCount()}, {"centre", centre_},          {"extent", extent_},
            {"tree", describeTree()},          {"parts", describeParts()},   {"steps", describeSteps()},
            {"fields", describeFields()},      {"notes", std::move(notes)}};
}

// A shape and its geometry, which has the same name, are one.
Json ViewModel::describeTree() const {
    std::map<std::uint32_t, std::size_t> places; // of nodes, by their ids
    std::map<const MoxReader::Node*, std::size_t> parts;
    for (std::size_t part = 0; part < source_.mesh().parts.size(); ++part) {
        parts.emplace(source_.mesh().parts[part].geometry, part);
    }
    auto tree = Json::array();
    for (const auto& node : source_.model().nodes()) {
        const auto parent = places.find(node.parent);
        const bool isGeometry = node.geometry() != nullptr && parent != places.end();
        if (isGeometry) {
            places[node.id] = parent->second;
        } else {
            places[node.id] = tree.size();
            tree.push_back({{"name", visibleText(node.name)},
                            {"parent", parent == places.end() ? Json(nullptr) : Json(parent->second)}});
        }
        if (const auto part = parts.find(&node); part != parts.end()) {
            tree[places[node.id]]["part"] = part->second;
        }
    }
    return tree;
}

Json ViewModel::describeParts() const {
    auto parts = Json::array();
    const auto& all = source_.mesh().parts;
    for (std::size_t part = 0; part < all.size(); ++part) {
        parts.push_back({{"name", visibleText(all[part].geometry->name)},
                         {"elements", all[part].elements},
                         {"dimension", all[part].dimension},
                         {"end", surface_.partEnds[part]}});
    }
    return parts;
}

Json ViewModel::describeSteps() const {
    auto steps = Json::array();
    for (const auto& step : source_.results().steps) {
        steps.push_back({{"name", visibleText(step.name)},
                         {"time", optionalNumber(step.time)},
                         {"mode", optionalNumber(step.mode)},
                         {"frequency", optionalNumber(step.frequency)},
                         {"vibration", step.vibration}});
    }
    return steps;
}

Json ViewModel::describeFields() const {
    auto fields = Json::array();
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const auto& field = fields_[i];
        auto columns = Json::array();
        for (const auto& column : field.columns) {
            columns.push_back(visibleText(column));
        }
        auto steps = Json::array();
        for (const auto step : field.steps) {
            steps.push_back(step == ResultField::NoStep ? Json(nullptr) : Json(step));
        }
        fields.push_back({{"name", visibleText(field.field->name)},
                          {"place", field.field->place == ResultPlace::Nodes ? "nodes" : "elements"},
                          {"columns", std::move(columns)},
                          {"derived", derivedText(field.derived)},
                          {"movesNodes", field.movesNodes},
                          {"steps", std::move(steps)}});
    }
    return fields;
}

} // namespace MoxTool
