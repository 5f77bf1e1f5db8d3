// A bar that is heated at one end: temperatures, displacements and heat flows, by step.

#include "BoxMesh.h"
#include "saveChecked.h"

#include <cmath>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace Qel::Mox2;

const BoxMesh Bar({200, 20, 20}, {40, 4, 4}); // mm

// What a solver would compute: degrees Celsius and mm at a place in mm, after a time in s.
float temperatureAt(float x, float time) {
    return 20.0F + 80.0F * std::erfc(x / (2.0F * std::sqrt(85.0F * time)));
}

float expansionAt(float x, float time) {
    const float depth = 2.0F * std::sqrt(85.0F * time);
    const float ratio = x / depth;
    return 12e-6F * 80.0F * (x * std::erfc(ratio) + 0.5642F * depth * (1.0F - std::exp(-ratio * ratio)));
}

// [results]
void addResults(Model& model, unsigned int bar, float time, const Step& step) {
    const std::size_t nodes = Bar.coordinates.rows();
    Array1d<float> temperature(nodes);
    Array2d<float> displacement(nodes, 3, 0.0F); // x, y, z of each node
    for (std::size_t i = 0; i < nodes; ++i) {
        const float x = Bar.coordinates(i, 0);
        temperature[i] = temperatureAt(x, time);
        displacement(i, 0) = expansionAt(x, time);
    }
    Array2d<float> flow(Bar.nodesPerElement.size(), 3, 0.0F); // x, y, z of each element
    for (std::size_t e = 0; e < flow.rows(); ++e) {
        const unsigned int near = Bar.connectivity[8 * e];
        const unsigned int far = Bar.connectivity[8 * e + 1];
        flow(e, 0) = 0.2F * (temperature[near] - temperature[far]);
    }
    Attributes celsius;
    celsius.set("Unit", "degC");
    model.addArrayProperty("Temperature", NodeScalar, temperature, bar, step, celsius);
    model.addArrayProperty(DisplacementVector, displacement, bar, step);
    model.addArrayProperty("Heat flow", ElementVector, flow, bar, step);
}
// [/results]

void save(const std::filesystem::path& path) {
    SaverOptions options;
    options.overwrite = true;
    options.sourceName = "results_by_step";
    options.sourceVersion = "1.0";
    Model model;
    model.saveTo(path.string(), options);
    model.addNode(Group, "Assembly");
    const unsigned int bar = model.addNode(Shape, "Bar");
    Bar.addTo(model, bar);
    // [steps]
    for (int number = 1; number <= 5; ++number) {
        const float time = 4.0F * static_cast<float>(number); // s
        Step step;
        step.name = "Step " + std::to_string(number);
        step.attributes.set("Time", time);
        addResults(model, bar, time, step);
    }
    // [/steps]
    model.close();
}

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "heated.mox";
    Examples::saveChecked(path, save);
    std::cout << "Saved " << path.string() << '\n';
} catch (const std::exception& error) {
    std::cerr << "results_by_step: " << error.what() << '\n';
    return 1;
}
