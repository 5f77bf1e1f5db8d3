#include "blockColor.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace MoxTool {

namespace {

constexpr double Paleness = 0.35; // the darkest of the three components
constexpr double Brightness = 0.9;

// How much of a primary colour a hue has: 1 within a sixth of the circle from it, 0 beyond two sixths.
double share(double hue, double primary) {
    const double distance = std::abs(hue - primary);
    const double sixths = 6 * std::min(distance, 1 - distance);
    return std::clamp(2 - sixths, 0.0, 1.0);
}

float component(double hue, double primary) {
    return static_cast<float>(Paleness + (Brightness - Paleness) * share(hue, primary));
}

} // namespace

std::vector<float> blockColor(std::size_t index) {
    const double hue = std::fmod(static_cast<double>(index) / std::numbers::phi, 1.0);
    return {component(hue, 0), component(hue, 1.0 / 3), component(hue, 2.0 / 3)};
}

} // namespace MoxTool
