#pragma once

#include "Material.h"

namespace Cantilever {

/// A prismatic beam of rectangular section, clamped at one end. Lengths in mm.
struct Beam {
    double length;
    double width;  ///< Across the load.
    double height; ///< Along the load.
};

/// The tip deflection in mm under a transverse tip force in N, after Timoshenko: bending and shear.
double tipDeflection(const Beam& beam, const Material& material, double force);

/// The first natural frequency in Hz of bending along the height, after Euler and Bernoulli.
double firstBendingFrequency(const Beam& beam, const Material& material);

} // namespace Cantilever
