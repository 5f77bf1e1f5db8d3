#include "NaturalModes.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace Cantilever {
namespace {

constexpr int MaximalSweeps = 100;
constexpr double Tolerance = 1e-10; // relative change of every wanted eigenvalue in one sweep

struct Subspace {
    Eigen::VectorXd eigenvalues; // squares of the angular frequencies
    Eigen::MatrixXd vectors;
};

// Any linearly independent vectors will do, as long as no mode is orthogonal to all of them.
Eigen::MatrixXd startVectors(Eigen::Index rows, Eigen::Index cols) {
    return Eigen::MatrixXd::NullaryExpr(rows, cols, [](Eigen::Index row, Eigen::Index col) {
        return std::sin(static_cast<double>((row + 1) * (col + 1)));
    });
}

// One inverse iteration, then the best approximations of the modes within the new subspace (Rayleigh-Ritz).
Subspace swept(const Structure& structure, const Subspace& last) {
    const Eigen::MatrixXd loads = structure.freeMass() * last.vectors;
    const Eigen::MatrixXd basis = structure.solveFree(loads);
    const Eigen::MatrixXd stiffness = basis.transpose() * loads; // since structure stiffness * basis == loads
    const Eigen::MatrixXd mass = basis.transpose() * (structure.freeMass() * basis);
    const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> ritz(stiffness, mass);
    return {ritz.eigenvalues(), basis * ritz.eigenvectors()};
}

bool isSettled(const Subspace& now, const Subspace& last, Eigen::Index count) {
    const auto change = (now.eigenvalues.head(count) - last.eigenvalues.head(count)).array().abs();
    return (change <= Tolerance * now.eigenvalues.head(count).array()).all();
}

} // namespace

NaturalModes naturalModes(const Structure& structure, Eigen::Index count) {
    if (count < 1 || count > structure.freeCount()) {
        throw std::invalid_argument("the number of modes must be from 1 to the number of degrees of freedom");
    }
    const Eigen::Index width = std::min(2 * count + 8, structure.freeCount());
    Subspace last{Eigen::VectorXd::Zero(width), startVectors(structure.freeCount(), width)};
    for (int sweep = 0; sweep < MaximalSweeps; ++sweep) {
        Subspace now = swept(structure, last);
        if (isSettled(now, last, count)) {
            return {now.eigenvalues.head(count).cwiseSqrt() / (2.0 * std::numbers::pi),
                    now.vectors.leftCols(count)};
        }
        last = std::move(now);
    }
    throw std::runtime_error("the natural modes did not settle");
}

} // namespace Cantilever
