#include "BoltedCantilever.h"

#include "LatticeMesher.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <string>

namespace Cantilever::BoltedCantilever {
namespace {

constexpr double CellSize = 10.0;

std::size_t cells(double length, std::size_t fineness) {
    return static_cast<std::size_t>(length / CellSize) * fineness;
}

// A box from one x to another, with its section centred on an axis along x.
Eigen::AlignedBox3d bar(double beginX, double endX, const std::array<double, 2>& axis, double width,
                        double height) {
    return {Eigen::Vector3d(beginX, axis[0] - width / 2.0, axis[1] - height / 2.0),
            Eigen::Vector3d(endX, axis[0] + width / 2.0, axis[1] + height / 2.0)};
}

Eigen::AlignedBox3d beamSection(double beginX, double endX) {
    return bar(beginX, endX, {0.0, 0.0}, TheBeam.width, TheBeam.height);
}

double meanDescent(const NodeTable& displacements, const std::vector<unsigned int>& nodes) {
    double sum = 0.0;
    for (const unsigned int node : nodes) {
        sum -= displacements(node, 2);
    }
    return sum / static_cast<double>(nodes.size());
}

// The slope of the x displacement over z, by least squares; the section is centred at z = 0.
double meanTilt(const Mesh& mesh, const NodeTable& displacements, const std::vector<unsigned int>& nodes) {
    double moment = 0.0;
    double squares = 0.0;
    for (const unsigned int node : nodes) {
        const double z = mesh.nodes(node, 2);
        moment += z * displacements(node, 0);
        squares += z * z;
    }
    return moment / squares;
}

} // namespace

Mesh mesh(std::size_t fineness) {
    const GridLines behind = uniformLines(WallPosition, 0.0, cells(-WallPosition, fineness));
    const GridLines along = uniformLines(0.0, TheBeam.length, cells(TheBeam.length, fineness) / 2);
    LatticeMesher mesher(joined(behind, along),
                         uniformLines(-PlateWidth / 2.0, PlateWidth / 2.0, cells(PlateWidth, fineness)),
                         uniformLines(-PlateHeight / 2.0, PlateHeight / 2.0, cells(PlateHeight, fineness)));
    for (std::size_t bolt = 0; bolt < BoltAxes.size(); ++bolt) {
        mesher.addPart("Bolt " + std::to_string(bolt + 1),
                       {bar(WallPosition, 0.0, BoltAxes[bolt], BoltSide, BoltSide)});
    }
    mesher.addPart("End plate", {bar(-PlateThickness, 0.0, {0.0, 0.0}, PlateWidth, PlateHeight)});
    mesher.addPart("Beam", {beamSection(0.0, TheBeam.length)});
    return mesher.mesh();
}

std::vector<unsigned int> fixedNodes(const Mesh& mesh) {
    return mesh.nodesInside(bar(WallPosition, WallPosition, {0.0, 0.0}, PlateWidth, PlateHeight));
}

NodeTable tipForces(const Mesh& mesh, double total) {
    const std::vector<unsigned int> tip = mesh.nodesInside(beamSection(TheBeam.length, TheBeam.length));
    NodeTable forces = NodeTable::Zero(mesh.nodes.rows(), 3);
    // All element faces at the tip are equal, so a node's share is the number of elements that meet there.
    for (const Element& element : mesh.elements) {
        for (const unsigned int node : element) {
            if (std::binary_search(tip.begin(), tip.end(), node)) {
                forces(node, 2) -= 1.0;
            }
        }
    }
    return forces * (total / -forces.sum());
}

TipDeflection tipDeflection(const Mesh& mesh, const NodeTable& displacements) {
    const std::vector<unsigned int> root = mesh.nodesInside(beamSection(0.0, 0.0));
    const std::vector<unsigned int> tip = mesh.nodesInside(beamSection(TheBeam.length, TheBeam.length));
    const double whole = meanDescent(displacements, tip);
    const double rigid =
        meanDescent(displacements, root) + TheBeam.length * meanTilt(mesh, displacements, root);
    return {whole, whole - rigid};
}

} // namespace Cantilever::BoltedCantilever
