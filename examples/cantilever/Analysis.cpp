#include "Analysis.h"

#include "BoltedCantilever.h"
#include "Hexahedron.h"
#include "NaturalModes.h"
#include "Structure.h"

namespace Cantilever {
namespace {

constexpr double FullLoad = 5000.0; // N
constexpr int StepCount = 5;
constexpr Eigen::Index ModeCount = 6;

Hexahedron::Vector gathered(const NodeTable& table, const Element& element) {
    Hexahedron::Vector vector;
    Eigen::Index position = 0;
    for (const unsigned int node : element) {
        vector.segment<3>(position) = table.row(node);
        position += 3;
    }
    return vector;
}

StressTable stressesOf(const Mesh& mesh, const Material& material, const NodeTable& displacements) {
    StressTable stresses(mesh.elements.size(), 6);
    Eigen::Index row = 0;
    for (const Element& element : mesh.elements) {
        stresses.row(row++) =
            Hexahedron::stressAtCentre(mesh.cornersOf(element), material, gathered(displacements, element));
    }
    return stresses;
}

Eigen::VectorXd vonMisesOf(const StressTable& stresses) {
    Eigen::VectorXd values(stresses.rows());
    for (Eigen::Index row = 0; row < stresses.rows(); ++row) {
        values[row] = vonMises(stresses.row(row).transpose());
    }
    return values;
}

LoadStep loadStep(const Analysis& analysis, const Structure& structure, double time) {
    const double load = time * FullLoad;
    const NodeTable forces = BoltedCantilever::tipForces(analysis.mesh, load);
    const NodeTable displacements = structure.displacements(forces);
    const StressTable stresses = stressesOf(analysis.mesh, analysis.material, displacements);
    return {.time = time,
            .load = load,
            .displacements = displacements,
            .reactions = structure.reactions(displacements, forces),
            .stresses = stresses,
            .vonMises = vonMisesOf(stresses)};
}

NodeTable scaledToOne(const NodeTable& shape) {
    Eigen::Index row = 0;
    Eigen::Index col = 0;
    shape.cwiseAbs().maxCoeff(&row, &col);
    return shape / shape(row, col);
}

std::vector<Mode> modesOf(const Structure& structure) {
    const NaturalModes found = naturalModes(structure, ModeCount);
    std::vector<Mode> modes;
    for (Eigen::Index i = 0; i < ModeCount; ++i) {
        modes.push_back({found.frequencies[i], scaledToOne(structure.expanded(found.shapes.col(i)))});
    }
    return modes;
}

} // namespace

Analysis analyse(std::size_t fineness) {
    Analysis analysis{Steel, BoltedCantilever::mesh(fineness), 0, {}, {}};
    const Structure structure(analysis.mesh, analysis.material, BoltedCantilever::fixedNodes(analysis.mesh));
    analysis.freeCount = structure.freeCount();
    for (int i = 1; i <= StepCount; ++i) {
        analysis.steps.push_back(loadStep(analysis, structure, static_cast<double>(i) / StepCount));
    }
    analysis.modes = modesOf(structure);
    return analysis;
}

} // namespace Cantilever
