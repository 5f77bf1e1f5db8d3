#include "MeshCollector.h"

#include "../common/Failure.h"
#include "../common/attributeValue.h"
#include "../common/datasetText.h"
#include "../common/visibleText.h"
#include "AttributeNames.h"
#include "ElementType.h"
#include "ResultPlace.h"
#include "groupTransforms.h"
#include "meshDatasets.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Node;

namespace {

using Integers = std::vector<std::uint32_t>;

constexpr std::int64_t NoId = -1;
constexpr std::size_t MostNodes = std::numeric_limits<std::int32_t>::max();

bool isNodalResult(const Dataset& dataset) {
    return resultPlaceOf(dataset) == ResultPlace::Nodes;
}

// A length that no known face has turns all elements into polygons.
bool arePolygons(const std::string& type, int dimension, const Integers& lengths) {
    if (ElementType(type).isNsided()) {
        return true;
    }
    return dimension == 2 && std::any_of(lengths.begin(), lengths.end(),
                                         [](auto length) { return findElementShape(2, length) == nullptr; });
}

bool isUniform(const Integers& lengths) {
    return std::adjacent_find(lengths.begin(), lengths.end(), std::not_equal_to<>()) == lengths.end();
}

// An import keeps large ids as texts.
std::int64_t wantedId(const MoxReader::Attributes& attributes) {
    constexpr double MostExact = 9007199254740992; // a double holds no larger integer safely
    const auto wish = numberAttribute(attributes, AttributeNames::BlockId);
    return wish && *wish >= 0 && *wish <= MostExact ? static_cast<std::int64_t>(*wish) : NoId;
}

// Imports of other formats than Exodus keep the names of their types too, but no block id. Exodus does not
// know these names.
std::string exodusType(const MoxReader::Attributes& attributes) {
    return attributes.contains(AttributeNames::BlockId)
               ? textAttribute(attributes, AttributeNames::ElementType)
               : "";
}

const ElementShape& shapeOf(int dimension, std::size_t nodes) {
    const auto* shape = findElementShape(dimension, nodes);
    return shape == nullptr ? UnknownShape : *shape;
}

} // namespace

MeshCollector::MeshCollector(std::string path, const MoxReader::Model& model, const ModelChoice& choice,
                             MoxReader::HeavyData& heavy, ConversionSummary& summary, WorkLimit& limit)
    : path_(std::move(path)),
      model_(model),
      choice_(choice),
      heavy_(heavy),
      summary_(summary),
      limit_(limit),
      transforms_(groupTransforms(model_)) {}

ModelMesh MeshCollector::collect() {
    std::vector<std::string> incomplete;
    for (const auto& node : model_.nodes()) {
        if (node.geometry() == nullptr || !choice_.takesNode(node)) {
            continue;
        }
        if (isComplete(node)) {
            addPart(node);
        } else {
            incomplete.push_back(node.name);
        }
    }
    summary_.addSkipped("geometries without Coordinates, Connectivity and Polylength", incomplete);
    for (const auto& nodes : mesh_.nodeGroups) {
        addPoints(nodes);
    }
    for (std::size_t part = 0; part < mesh_.parts.size(); ++part) {
        addElements(part);
    }
    numberBlocks();
    return std::move(mesh_);
}

void MeshCollector::addPart(const Node& geometry) {
    MeshPart part;
    part.geometry = &geometry;
    part.connectivity = findConnectivity(geometry);
    part.polylength = findPolylength(geometry);
    limit_.add(model_.resolve(*part.connectivity).sizeInBytes);
    limit_.add(model_.resolve(*part.polylength).sizeInBytes);
    limit_.add(geometry.name.size());
    part.dimension = connectivityDimension(*part.connectivity);
    part.nodeGroup = nodesOf(geometry, *findCoordinates(geometry));
    mesh_.parts.push_back(part);
}

std::size_t MeshCollector::nodesOf(const Node& geometry, const Dataset& coordinates) {
    NodesKey key;
    auto& [holder, matrix, results] = key;
    holder = &model_.resolve(coordinates);
    const auto& transform = transforms_[geometry.id - 1];
    std::copy_n(transform.matrix().data(), matrix.size(), matrix.begin());
    for (const auto& dataset : geometry.geometry()->datasets) {
        if (isNodalResult(dataset) && choice_.takesDataset(dataset)) {
            results.emplace(dataset.key, &model_.resolve(dataset));
        }
    }
    const auto [place, isNew] = knownNodes_.emplace(std::move(key), mesh_.nodeGroups.size());
    if (isNew) {
        if (holder->width != 3) {
            fail(geometry, "its coordinates have not three columns");
        }
        limit_.add(holder->sizeInBytes);
        mesh_.nodeGroups.push_back({holder, transform, nodeCount_, itemCount(*holder)});
        nodeCount_ += itemCount(*holder);
        if (nodeCount_ > MostNodes) {
            throw Failure(path_, fmt::format("has more than {} nodes", MostNodes));
        }
    }
    return place->second;
}

void MeshCollector::addPoints(const MeshNodes& nodes) {
    auto points = heavy_.readFloats(*nodes.coordinates);
    if (!nodes.transform.matrix().isIdentity(0)) {
        for (std::size_t i = 0; i < points.size(); i += 3) {
            Eigen::Map<Eigen::Vector3f> point(points.data() + i);
            point = (nodes.transform * point.cast<double>()).cast<float>();
        }
        summary_.addNote("transforms of groups are applied to coordinates, not to results");
    }
    mesh_.points.insert(mesh_.points.end(), points.begin(), points.end());
}

void MeshCollector::addElements(std::size_t partIndex) {
    auto& part = mesh_.parts[partIndex];
    const auto nodes = heavy_.readUnsigned(*part.connectivity);
    const auto lengths = heavy_.readUnsigned(*part.polylength);
    checkElements(part, nodes, lengths);
    part.firstElement = elementCount_;
    part.elements = lengths.size();
    part.firstBlock = mesh_.blocks.size();
    splitElements(partIndex, nodes, lengths);
    part.endBlock = mesh_.blocks.size();
    nameBlocks(part);
    elementCount_ += part.elements;
}

void MeshCollector::checkElements(const MeshPart& part, const Integers& nodes,
                                  const Integers& lengths) const {
    const auto sum = std::accumulate(lengths.begin(), lengths.end(), std::uint64_t{0});
    if (sum != nodes.size()) {
        fail(*part.geometry, fmt::format("its elements have {} nodes by Polylength and {} by Connectivity",
                                         sum, nodes.size()));
    }
    if (std::find(lengths.begin(), lengths.end(), 0U) != lengths.end()) {
        fail(*part.geometry, "it has an element without nodes");
    }
    const auto count = mesh_.nodeGroups[part.nodeGroup].count;
    const auto bad = std::find_if(nodes.begin(), nodes.end(), [=](auto node) { return node >= count; });
    if (bad != nodes.end()) {
        fail(*part.geometry, fmt::format("an element refers to node {} of {}", *bad, count));
    }
}

void MeshCollector::splitElements(std::size_t partIndex, const Integers& nodes, const Integers& lengths) {
    const auto& part = mesh_.parts[partIndex];
    const auto type = exodusType(model_.resolve(*part.connectivity).attributes);
    const bool polygons = arePolygons(type, part.dimension, lengths);
    const auto firstNode = static_cast<std::uint32_t>(mesh_.nodeGroups[part.nodeGroup].first);
    std::map<std::size_t, MeshBlock> blocks;
    std::size_t place = 0;
    for (std::size_t row = 0; row < lengths.size(); ++row) {
        auto& block = blocks[polygons ? 0 : lengths[row]];
        block.rows.push_back(row);
        if (polygons) {
            block.lengths.push_back(lengths[row]);
        }
        for (std::uint32_t i = 0; i < lengths[row]; ++i) {
            block.nodes.push_back(firstNode + nodes[place++]);
        }
    }
    const bool typeFits = !type.empty() && (polygons ? ElementType(type).isNsided() : isUniform(lengths));
    for (auto& [length, block] : blocks) {
        block.part = partIndex;
        block.nodesPerElement = length;
        block.shape = polygons ? &PolygonShape : &shapeOf(part.dimension, length);
        block.type = typeFits ? type : "";
        mesh_.blocks.push_back(std::move(block));
    }
}

// A geometry that is split by length gives each block its own name.
void MeshCollector::nameBlocks(const MeshPart& part) {
    const auto& attributes = model_.resolve(*part.connectivity).attributes;
    const bool named = attributes.contains(AttributeNames::BlockName);
    const auto name = named ? textAttribute(attributes, AttributeNames::BlockName) : part.geometry->name;
    const bool several = part.endBlock - part.firstBlock > 1;
    for (auto i = part.firstBlock; i < part.endBlock; ++i) {
        auto& block = mesh_.blocks[i];
        block.name = several ? fmt::format("{} {}", name, block.nodesPerElement) : name;
    }
}

// Takes the ids that the attributes ask for, as far as they are unique, then the lowest free ones.
void MeshCollector::numberBlocks() {
    std::set<std::int64_t> taken;
    std::vector<MeshBlock*> others;
    for (auto& block : mesh_.blocks) {
        const auto& connectivity = model_.resolve(*mesh_.parts[block.part].connectivity);
        block.id = wantedId(connectivity.attributes);
        if (block.id == NoId || !taken.insert(block.id).second) {
            others.push_back(&block);
        }
    }
    std::int64_t next = 1;
    for (auto* block : others) {
        while (!taken.insert(next).second) {
            ++next;
        }
        block->id = next;
    }
}

void MeshCollector::fail(const Node& geometry, const std::string& reason) const {
    throw Failure(path_, fmt::format("geometry \"{}\": {}; mox check lists all damage",
                                     visibleText(geometry.name), reason));
}

} // namespace MoxTool
