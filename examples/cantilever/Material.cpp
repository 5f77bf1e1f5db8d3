#include "Material.h"

#include <cmath>

namespace Cantilever {

SixMatrix Material::elasticity() const {
    const double lame = young * poisson / ((1.0 + poisson) * (1.0 - 2.0 * poisson));
    SixMatrix matrix = SixMatrix::Zero();
    matrix.topLeftCorner<3, 3>().setConstant(lame);
    matrix.diagonal().head<3>().array() += 2.0 * shear();
    matrix.diagonal().tail<3>().setConstant(shear());
    return matrix;
}

double vonMises(const SixVector& stress) {
    const Eigen::Vector3d normal = stress.head<3>();
    const Eigen::Vector3d deviator = normal.array() - normal.mean();
    return std::sqrt(1.5 * deviator.squaredNorm() + 3.0 * stress.tail<3>().squaredNorm());
}

} // namespace Cantilever
