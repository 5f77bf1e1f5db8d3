#pragma once

#include "MoxReader/Attributes.h"
#include "MoxReader/Dataset.h"
#include "MoxReader/Material.h"
#include "MoxReader/StreamReader.h"

#include <array>
#include <string>
#include <variant>
#include <vector>

namespace MoxReader {

/// One record of the stream "Mox Tree". Id 0 means none.
struct NodeRecord {
    std::uint32_t id = 0;            ///< From 1 in order of creation.
    std::uint32_t parent = 0;        ///< 0 for the root.
    std::uint32_t previous = 0;      ///< Sibling before this one.
    std::uint32_t next = 0;          ///< Sibling after this one.
    std::uint32_t firstChild = 0;    ///< 0 if there is none.
    std::uint32_t lastChild = 0;     ///< Likewise.
    std::string name;                ///< Siblings can have the same name.
    std::string typeName;            ///< Empty for a root that was never set.
    std::string version;             ///< Version of the node's own layout.
    std::uint64_t lightPosition = 0; ///< Where its descriptor starts in "Light Data".
};

/// A node of the assembly.
struct Group {
    std::array<float, 3> translation{}; ///< x, y, z, in the unit of the coordinates.
    std::array<float, 4> rotation{};    ///< Axis, then angle.
    std::array<float, 3> scale{};       ///< Along x, y and z.
    std::uint8_t kind = 0;              ///< 1 for a root that was made as a marked group, else 0.
    Attributes attributes;              ///< As the application gave them.
};

/// A visible object; its geometry is its child.
struct Shape {
    Material material; ///< How it looks.
};

/// The datasets of a shape.
struct Geometry {
    std::vector<Dataset> datasets; ///< In the order in which the application first named them.
};

/// Where named sets of nodes are in "Heavy Data". HeavyData::readNodeSets() reads them.
struct NodeSets {
    std::uint32_t setCount = 0;      ///< The number of sets.
    std::uint64_t heavyPosition = 0; ///< Where they begin in "Heavy Data".
    std::uint32_t heavySize = 0;     ///< Bytes.
};

/// A node with what belongs to it; a plain node and an unset root have nothing.
struct Node : NodeRecord {
    std::variant<std::monostate, Group, Shape, Geometry, NodeSets> content; ///< What depends on the type.

    // Null unless the node is of that type.
    /// The content of a group.
    const Group* group() const { return std::get_if<Group>(&content); }
    /// The content of a shape.
    const Shape* shape() const { return std::get_if<Shape>(&content); }
    /// The content of a geometry.
    const Geometry* geometry() const { return std::get_if<Geometry>(&content); }
    /// The descriptor of node sets.
    const NodeSets* nodeSets() const { return std::get_if<NodeSets>(&content); }
};

/// Reads one record of the stream "Mox Tree". @throws Error  Those of StreamReader.
NodeRecord readNodeRecord(StreamReader& tree);

/// Reads the stream "Mox Tree": the count and all records, without checking the ids.
/// @throws Error  BadCount (also for 0 nodes), TrailingStreamBytes, and those of StreamReader.
std::vector<NodeRecord> readNodeRecords(StreamReader& tree);

/// Reads the descriptor of a group of version "0.4" from "Light Data". Attributes stay empty.
/// @throws Error  Those of StreamReader.
Group readGroup(StreamReader& light);

/// Reads the descriptor of a NodeSets node from "Light Data"; its size word allows later fields to be
/// skipped.
/// @throws Error  BadRecordSize, and those of StreamReader.
NodeSets readNodeSetsDescriptor(StreamReader& light);

} // namespace MoxReader
