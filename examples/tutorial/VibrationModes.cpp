// The first bending modes of a beam that is clamped at one end: mode shapes with their frequencies.

#include "BoxMesh.h"
#include "saveChecked.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <string>

namespace {

using namespace Qel::Mox2;

constexpr float Length = 1000; // mm
const BoxMesh Beam({Length, 20, 10}, {100, 2, 1});

// Roots of cos(x) cosh(x) = -1, and what follows for a beam of steel, 10 mm high.
constexpr std::array<double, 3> Roots{1.8751, 4.6941, 7.8548};

double frequency(double root) { // Hz
    const double radius = 10.0 / std::sqrt(12.0);
    const double speedOfSound = 5.17e6; // mm/s
    return root * root * radius * speedOfSound / (2 * std::numbers::pi * Length * Length);
}

double deflection(double root, double place) { // place from 0 to 1
    const double ratio = (std::sinh(root) - std::sin(root)) / (std::cosh(root) + std::cos(root));
    const double x = root * place;
    return std::cosh(x) - std::cos(x) - ratio * (std::sinh(x) - std::sin(x));
}

// [mode]
void addMode(Model& model, unsigned int beam, int number, double root) {
    Array2d<float> shape(Beam.coordinates.rows(), 3, 0.0F);
    for (std::size_t i = 0; i < shape.rows(); ++i) {
        shape(i, 2) = static_cast<float>(deflection(root, Beam.coordinates(i, 0) / Length));
    }
    Step mode;
    mode.name = "Mode " + std::to_string(number);
    mode.attributes.set("Mode", number);
    mode.attributes.set("Frequency", static_cast<float>(frequency(root)));
    Attributes attributes;
    attributes.set("Category", "Vibration"); // marks a mode shape: it has no amplitude of its own
    model.addArrayProperty("Mode shape", NodeVector, shape, beam, mode, attributes);
}
// [/mode]

void save(const std::filesystem::path& path) {
    SaverOptions options;
    options.overwrite = true;
    options.sourceName = "vibration_modes";
    options.sourceVersion = "1.0";
    Model model;
    model.saveTo(path.string(), options);
    model.addNode(Group, "Assembly");
    const unsigned int beam = model.addNode(Shape, "Beam");
    Beam.addTo(model, beam);
    for (std::size_t i = 0; i < Roots.size(); ++i) {
        addMode(model, beam, static_cast<int>(i) + 1, Roots[i]);
    }
    model.close();
}

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "modes.mox";
    Examples::saveChecked(path, save);
    std::cout << "Saved " << path.string() << '\n';
} catch (const std::exception& error) {
    std::cerr << "vibration_modes: " << error.what() << '\n';
    return 1;
}
