#include "BeamTheory.h"

#include <cmath>
#include <numbers>

namespace Cantilever {
namespace {

double area(const Beam& beam) {
    return beam.width * beam.height;
}

double secondMoment(const Beam& beam) {
    return beam.width * std::pow(beam.height, 3) / 12.0;
}

} // namespace

double tipDeflection(const Beam& beam, const Material& material, double force) {
    const double correction = 10.0 * (1.0 + material.poisson) / (12.0 + 11.0 * material.poisson);
    const double bending = force * std::pow(beam.length, 3) / (3.0 * material.young * secondMoment(beam));
    const double shear = force * beam.length / (correction * material.shear() * area(beam));
    return bending + shear;
}

double firstBendingFrequency(const Beam& beam, const Material& material) {
    constexpr double root = 1.875104068711961; // of cos(x) * cosh(x) = -1
    const double massPerLength = material.density * area(beam);
    const double stiffness = material.young * secondMoment(beam);
    return root * root / (2.0 * std::numbers::pi) *
           std::sqrt(stiffness / (massPerLength * std::pow(beam.length, 4)));
}

} // namespace Cantilever
