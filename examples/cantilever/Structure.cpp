#include "Structure.h"

#include "Hexahedron.h"

#include <algorithm>
#include <stdexcept>

namespace Cantilever {
namespace {

using SparseMatrix = Structure::SparseMatrix;
using Triplets = std::vector<Eigen::Triplet<double>>;

Eigen::Index dofOf(const Element& element, Eigen::Index local) {
    return 3 * static_cast<Eigen::Index>(element[static_cast<std::size_t>(local / 3)]) + local % 3;
}

void scatter(const Hexahedron::Matrix& matrix, const Element& element, Triplets& triplets) {
    for (Eigen::Index col = 0; col < matrix.cols(); ++col) {
        for (Eigen::Index row = 0; row < matrix.rows(); ++row) {
            triplets.emplace_back(static_cast<int>(dofOf(element, row)),
                                  static_cast<int>(dofOf(element, col)), matrix(row, col));
        }
    }
}

template <typename ElementFunction>
SparseMatrix assembled(const Mesh& mesh, const Material& material, ElementFunction elementMatrix) {
    Triplets triplets;
    triplets.reserve(mesh.elements.size() * 24 * 24);
    for (const Element& element : mesh.elements) {
        scatter(elementMatrix(mesh.cornersOf(element), material), element, triplets);
    }
    SparseMatrix matrix(mesh.nodes.size(), mesh.nodes.size());
    matrix.setFromTriplets(triplets.begin(), triplets.end());
    return matrix;
}

SparseMatrix freeSelection(Eigen::Index nodeCount, const std::vector<unsigned int>& fixedNodes) {
    std::vector<bool> fixed(static_cast<std::size_t>(nodeCount), false);
    for (const unsigned int node : fixedNodes) {
        fixed[node] = true;
    }
    Triplets triplets;
    for (int dof = 0; dof < 3 * nodeCount; ++dof) {
        if (!fixed[static_cast<std::size_t>(dof / 3)]) {
            triplets.emplace_back(static_cast<int>(triplets.size()), dof, 1.0);
        }
    }
    SparseMatrix selection(static_cast<Eigen::Index>(triplets.size()), 3 * nodeCount);
    selection.setFromTriplets(triplets.begin(), triplets.end());
    return selection;
}

Eigen::VectorXd toVector(const NodeTable& table) {
    return Eigen::Map<const Eigen::VectorXd>(table.data(), table.size());
}

NodeTable toTable(const Eigen::VectorXd& vector) {
    return Eigen::Map<const NodeTable>(vector.data(), vector.size() / 3, 3);
}

// A mechanism shows as a pivot that rounding alone keeps from zero.
bool isStiff(const Eigen::VectorXd& pivots) {
    return pivots.size() > 0 && pivots.minCoeff() > 1e-12 * pivots.maxCoeff();
}

} // namespace

Structure::Structure(const Mesh& mesh, const Material& material, const std::vector<unsigned int>& fixedNodes)
    : stiffness_(assembled(mesh, material, Hexahedron::stiffness)),
      selection_(freeSelection(mesh.nodes.rows(), fixedNodes)) {
    const SparseMatrix transposed = selection_.transpose();
    mass_ = selection_ * assembled(mesh, material, Hexahedron::mass) * transposed;
    factorised_.compute(SparseMatrix(selection_ * stiffness_ * transposed));
    if (factorised_.info() != Eigen::Success || !isStiff(factorised_.vectorD())) {
        throw std::runtime_error("the structure is not supported well enough to be stable");
    }
}

NodeTable Structure::displacements(const NodeTable& forces) const {
    return expanded(solveFree(selection_ * toVector(forces)));
}

NodeTable Structure::reactions(const NodeTable& displacements, const NodeTable& forces) const {
    const Eigen::VectorXd unbalanced = toVector(internalForces(displacements) - forces);
    return toTable(unbalanced - selection_.transpose() * (selection_ * unbalanced));
}

NodeTable Structure::internalForces(const NodeTable& displacements) const {
    return toTable(stiffness_ * toVector(displacements));
}

Eigen::MatrixXd Structure::solveFree(const Eigen::MatrixXd& right) const {
    return factorised_.solve(right);
}

NodeTable Structure::expanded(const Eigen::VectorXd& free) const {
    return toTable(selection_.transpose() * free);
}

} // namespace Cantilever
