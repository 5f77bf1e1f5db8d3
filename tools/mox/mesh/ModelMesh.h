#pragma once

#include "ElementShape.h"

#include <MoxReader/Model.h>

#include <Eigen/Geometry>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// A geometry that takes part in an export.
struct MeshPart {
    const MoxReader::Node* geometry = nullptr;
    const MoxReader::Dataset* connectivity = nullptr; ///< As the geometry has it, so perhaps a link.
    const MoxReader::Dataset* polylength = nullptr;   ///< Likewise.
    int dimension = 0;                                ///< The dimension of its elements, from 1 to 3.
    std::size_t nodeGroup = 0;
    std::size_t elements = 0;
    std::size_t firstElement = 0; ///< The number of elements in the parts before it.
    std::size_t firstBlock = 0;   ///< Place of its first block in ModelMesh::blocks.
    std::size_t endBlock = 0;     ///< The place after its last.
};

/// Nodes that several parts can share: those of one dataset of coordinates in one place of the assembly.
struct MeshNodes {
    const MoxReader::Dataset* coordinates = nullptr; ///< The holder of the numbers.
    Eigen::Affine3d transform = Eigen::Affine3d::Identity();
    std::size_t first = 0; ///< Place of the first in ModelMesh::points.
    std::size_t count = 0;
};

/// Elements of one part and one shape.
struct MeshBlock {
    std::size_t part = 0;
    std::int64_t id = 0; ///< Unique among all blocks.
    std::string name;    ///< Can be empty.
    std::string type;    ///< In an Exodus file.
    const ElementShape* shape = nullptr;
    std::size_t nodesPerElement = 0;    ///< 0 if the shape is PolygonShape.
    std::vector<std::uint32_t> lengths; ///< The number of nodes of each element if the shape is PolygonShape.
    std::vector<std::uint32_t> nodes;   ///< Places in ModelMesh::points, element by element.
    std::vector<std::size_t> rows;      ///< For each element its row in the part's datasets.
};

/// The nodes and elements of a whole model, in one numbering.
struct ModelMesh {
    std::vector<MeshPart> parts;
    std::vector<MeshNodes> nodeGroups;
    std::vector<MeshBlock> blocks; ///< In the order of their parts.
    std::vector<float> points;     ///< x, y, z of each node, group by group.

    std::size_t nodeCount() const { return points.size() / 3; }
    std::size_t elementCount() const {
        return parts.empty() ? 0 : parts.back().firstElement + parts.back().elements;
    }
};

} // namespace MoxTool
