#include "GmshImporter.h"

#include "../../common/Failure.h"
#include "../../common/Terminal.h"
#include "../../common/utf8Path.h"
#include "../../mesh/AttributeNames.h"
#include "../../mesh/DatasetNames.h"
#include "../../mesh/NodeOrder.h"
#include "../model/setNumber.h"
#include "GmshResultImporter.h"

#include <fmt/core.h>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <utility>

namespace MoxTool {

using Qel::Mox2::DatasetType;

namespace {

// By dimension.
constexpr const char* EntityKinds[] = {"Point", "Curve", "Surface", "Volume"};

// Sections that are read, or that hold only bookkeeping.
const std::set<std::string> KnownSections = {
    "MeshFormat",      "Comments",        "Entities",           "PhysicalNames",
    "Nodes",           "Elements",        "NodeData",           "ElementData",
    "ElementNodeData", "ParametricNodes", "PartitionedEntities"};

constexpr std::size_t LongestAttribute = 255;

// A list of numbers, or their count if the list is too long for an attribute.
std::string listText(const std::vector<int>& numbers) {
    const auto text = fmt::format("{}", fmt::join(numbers, ", "));
    return text.size() <= LongestAttribute ? text : fmt::format("{} in all", numbers.size());
}

GmshNodes sortedByTag(const GmshNodes& nodes) {
    std::vector<std::size_t> places(nodes.tags.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::sort(places.begin(), places.end(),
              [&nodes](auto left, auto right) { return nodes.tags[left] < nodes.tags[right]; });
    GmshNodes sorted;
    for (const auto place : places) {
        const auto first = nodes.coordinates.begin() + static_cast<std::ptrdiff_t>(3 * place);
        sorted.tags.push_back(nodes.tags[place]);
        sorted.coordinates.insert(sorted.coordinates.end(), first, first + 3);
    }
    return sorted;
}

} // namespace

void GmshImporter::run() {
    nodes_ = sortedByTag(source_.nodes());
    target_.limits.checkNodeCount(nodes_.tags.size());
    nodeIndex_.emplace(nodes_.tags);
    addRoot();
    const auto groups = groupEntities();
    for (std::size_t place = 0; place < groups.size(); ++place) {
        target_.terminal.progress("importing elements",
                                  static_cast<double>(place) / static_cast<double>(groups.size()));
        if (isChosen(groups[place])) {
            addGroup(groups[place]);
        }
    }
    if (parts_.empty()) {
        target_.choices.blocks.check(path_);
        throw Failure(path_, "has no elements");
    }
    addNodes();
    GmshResultImporter(source_, *nodeIndex_, nodes_.tags.size(), parts_, target_).run();
    listSkipped();
}

void GmshImporter::addRoot() {
    const auto file = pathOf(path_);
    Qel::Mox2::Attributes attributes;
    attributes.set(AttributeNames::SourceFile, utf8Of(file.filename()));
    attributes.set("Gmsh File Version", source_.version());
    setNumber(attributes, AttributeNames::Nodes, static_cast<std::int64_t>(nodes_.tags.size()));
    target_.model.addNode(Qel::Mox2::NodeType::RootGroup, utf8Of(file.stem()), attributes);
}

std::vector<GmshImporter::EntityGroup> GmshImporter::groupEntities() const {
    std::vector<EntityGroup> groups;
    std::map<std::pair<int, std::vector<int>>, std::size_t> places;
    for (const auto& entity : source_.entities()) {
        const std::pair key(entity.dimension, entity.physicalTags);
        const auto known = places.find(key);
        if (!entity.physicalTags.empty() && known != places.end()) {
            groups[known->second].entities.push_back(entity);
            continue;
        }
        places[key] = groups.size();
        groups.push_back({labelOf(entity), {entity}});
    }
    return groups;
}

std::string GmshImporter::labelOf(const GmshEntity& entity) const {
    const auto* kind = EntityKinds[entity.dimension];
    if (entity.physicalTags.empty()) {
        return entity.name.empty() ? fmt::format("{} {}", kind, entity.tag) : entity.name;
    }
    std::vector<std::string> labels;
    for (const auto tag : entity.physicalTags) {
        const auto name = source_.physicalName(entity.dimension, tag);
        labels.push_back(name.empty() ? fmt::format("Physical {} {}", kind, tag) : name);
    }
    return fmt::format("{}", fmt::join(labels, " + "));
}

// By its label or by the tag of a physical group or, without one, of an entity.
bool GmshImporter::isChosen(const EntityGroup& group) {
    const auto& first = group.entities.front();
    std::vector<std::string> tags;
    for (const auto tag : first.physicalTags) {
        tags.push_back(std::to_string(tag));
        tags.push_back(source_.physicalName(first.dimension, tag));
    }
    if (tags.empty()) {
        tags.push_back(std::to_string(first.tag));
    }
    return target_.choices.blocks.takes(group.label, tags);
}

void GmshImporter::addGroup(const EntityGroup& group) {
    std::vector<int> tags;
    for (const auto& entity : group.entities) {
        tags.push_back(entity.tag);
    }
    auto collected = collect(group);
    for (auto& [type, elements] : collected) {
        const auto name = uniqueName(group.label, elements.typeName, collected.size() == 1);
        auto& table = elements.table;
        reorderNodes(table.connectivity, gmshNodeOrder(type));
        table.attributes.set(AttributeNames::ElementType, elements.typeName);
        table.attributes.set("Entities", listText(tags));
        if (!group.entities.front().physicalTags.empty()) {
            table.attributes.set("Physical Groups", listText(group.entities.front().physicalTags));
        }
        setNumber(table.attributes, "Gmsh Element Type", type);
        setNumber(table.attributes, AttributeNames::Elements, static_cast<std::int64_t>(table.ids.size()));
        setNumber(table.attributes, AttributeNames::NodesPerElement, table.polylength.front());
        const auto geometry = target_.shapes.addShape(1, name, parts_.size());
        target_.shapes.addElements(geometry, table);
        parts_.push_back({geometry, table.ids.size(), TagIndex(elements.tags)});
    }
}

std::map<int, GmshImporter::Collected> GmshImporter::collect(const EntityGroup& group) const {
    std::map<int, Collected> collected;
    for (const auto& entity : group.entities) {
        for (const auto& elements : source_.elements(entity)) {
            auto& ofType = collected[elements.type];
            ofType.typeName = elements.typeName;
            ofType.table.dimension = entity.dimension;
            append(elements, ofType);
        }
    }
    return collected;
}

void GmshImporter::append(const GmshElements& elements, Collected& collected) const {
    auto& table = collected.table;
    for (const auto tag : elements.nodeTags) {
        const auto place = nodeIndex_->find(tag);
        if (!place) {
            throw Failure(path_,
                          fmt::format("damaged: an element refers to node {}, which is not there", tag));
        }
        table.connectivity.push_back(static_cast<unsigned int>(*place));
    }
    const auto ids = target_.limits.narrowIds(elements.tags);
    table.ids.insert(table.ids.end(), ids.begin(), ids.end());
    table.polylength.insert(table.polylength.end(), ids.size(),
                            static_cast<unsigned int>(elements.nodesPerElement));
    collected.tags.insert(collected.tags.end(), elements.tags.begin(), elements.tags.end());
}

std::string GmshImporter::uniqueName(const std::string& label, const std::string& typeName, bool hasOneType) {
    if (hasOneType && names_.insert(label).second) {
        return label;
    }
    const auto wanted = fmt::format("{} ({})", label, typeName);
    auto name = wanted;
    for (int number = 2; !names_.insert(name).second; ++number) {
        name = fmt::format("{} ({})", wanted, number);
    }
    return name;
}

void GmshImporter::addNodes() {
    RealTable table(nodes_.tags.size(), 3);
    std::vector<double> column(nodes_.tags.size());
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (std::size_t row = 0; row < column.size(); ++row) {
            column[row] = nodes_.coordinates[3 * row + axis];
        }
        table.setColumn(axis, column, target_.narrowing);
    }
    std::vector<unsigned int> geometries;
    for (const auto& part : parts_) {
        geometries.push_back(part.geometry);
    }
    target_.datasets.writeReals(DatasetNames::Coordinates, DatasetType::Coordinates, table, geometries, {});
    target_.datasets.writeIntegers(DatasetType::NodeIds, target_.limits.narrowIds(nodes_.tags), geometries);
    target_.summary.nodes = static_cast<std::int64_t>(nodes_.tags.size());
}

void GmshImporter::listSkipped() {
    const auto inFile = source_.nodesInFile();
    if (inFile > nodes_.tags.size()) {
        target_.summary.addSkipped("nodes that belong to no element",
                                   static_cast<std::int64_t>(inFile - nodes_.tags.size()));
    }
    std::vector<std::string> otherSections;
    for (const auto& section : source_.sections()) {
        if (!KnownSections.contains(section)) {
            otherSections.push_back(section);
        }
    }
    target_.summary.addSkipped("sections of the file", otherSections);
}

} // namespace MoxTool
