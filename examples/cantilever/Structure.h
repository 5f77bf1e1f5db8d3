#pragma once

#include "Material.h"
#include "Mesh.h"

#include <Eigen/SparseCholesky>
#include <Eigen/SparseCore>

#include <vector>

namespace Cantilever {

/// A supported mesh with its assembled matrices and its factorised stiffness.
///
/// Degrees of freedom are numbered 3 * node + axis; those of the fixed nodes are taken out, and the remaining
/// ones, in the same order, are the free ones.
class Structure {
public:
    using SparseMatrix = Eigen::SparseMatrix<double>;

    /// @throws std::runtime_error if the supports leave a rigid motion free.
    Structure(const Mesh& mesh, const Material& material, const std::vector<unsigned int>& fixedNodes);

    /// Displacements in mm under nodal forces in N.
    NodeTable displacements(const NodeTable& forces) const;

    /// The reaction forces in N of the supports, zero at free nodes.
    NodeTable reactions(const NodeTable& displacements, const NodeTable& forces) const;

    /// Stiffness times `displacements`: the nodal forces in N that cause them.
    NodeTable internalForces(const NodeTable& displacements) const;

    Eigen::Index freeCount() const { return selection_.rows(); }

    /// The mass matrix in tonne, free degrees of freedom only.
    const SparseMatrix& freeMass() const { return mass_; }

    /// Solves stiffness * x = `right` for each column, free degrees of freedom only.
    Eigen::MatrixXd solveFree(const Eigen::MatrixXd& right) const;

    /// Puts a vector of the free degrees of freedom into a table of all nodes; fixed nodes get zeros.
    NodeTable expanded(const Eigen::VectorXd& free) const;

private:
    SparseMatrix stiffness_; // all degrees of freedom
    SparseMatrix selection_; // one row for each free degree of freedom, with a 1 at its full number
    SparseMatrix mass_;
    Eigen::SimplicialLDLT<SparseMatrix> factorised_;
};

} // namespace Cantilever
