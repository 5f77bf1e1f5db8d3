#pragma once

#include "LatticeMesher.h"
#include "Structure.h"

#include <Eigen/Geometry>

#include <cstddef>
#include <vector>

namespace Cantilever {

/// A bar of square section, 10 mm wide, one element thick, from x = 0, where it is clamped.
struct TestBeam {
    TestBeam(double length, std::size_t cells, const Material& material)
        : mesh(meshOf(length, cells)),
          structure(mesh, material, mesh.nodesInside(bar(0.0, 0.0))),
          tip(mesh.nodesInside(bar(length, length))) {}

    /// A force spread evenly over the free end, given by its sum.
    NodeTable tipForce(const Eigen::RowVector3d& force) const {
        NodeTable forces = NodeTable::Zero(mesh.nodes.rows(), 3);
        for (const unsigned int node : tip) {
            forces.row(node) = force / 4.0;
        }
        return forces;
    }

    static Eigen::AlignedBox3d bar(double beginX, double endX) {
        return {Eigen::Vector3d(beginX, 0, 0), Eigen::Vector3d(endX, 10, 10)};
    }

    static Mesh meshOf(double length, std::size_t cells) {
        LatticeMesher mesher(uniformLines(0, length, cells), {0, 10}, {0, 10});
        mesher.addPart("Bar", {bar(0, length)});
        return mesher.mesh();
    }

    Mesh mesh;
    Structure structure;
    std::vector<unsigned int> tip;
};

} // namespace Cantilever
