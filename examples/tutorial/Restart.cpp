// Reads the last temperatures of a model, as results_by_step saves it, and goes on from them in a new file.

#include "saveChecked.h"

#include <MoxReader/HeavyData.h>
#include <Qel/Mox2/Model.h>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct State {
    std::vector<float> coordinates; // three for each node
    std::vector<std::uint32_t> connectivity, nodesPerElement;
    std::string step;
    float time = -1;
    std::vector<float> temperature;
};

float timeOf(const MoxReader::Dataset& dataset) {
    const auto found = dataset.attributes.find("Time");
    const float* const time =
        found == dataset.attributes.end() ? nullptr : std::get_if<float>(&found->second);
    return time == nullptr ? 0.0F : *time;
}

// [read]
State readLast(const std::filesystem::path& path) {
    const MoxReader::File file(path);
    const MoxReader::Model model = MoxReader::readModel(file);
    MoxReader::HeavyData numbers(file, model);
    State state;
    for (const MoxReader::Node& node : model.nodes()) {
        if (node.geometry() == nullptr || node.name != "Bar") {
            continue;
        }
        for (const MoxReader::Dataset& dataset : node.geometry()->datasets) {
            if (dataset.name == "Coordinates") {
                state.coordinates = numbers.readFloats(dataset);
            } else if (dataset.name == "Connectivity") {
                state.connectivity = numbers.readUnsigned(dataset);
            } else if (dataset.name == "Polylength") {
                state.nodesPerElement = numbers.readUnsigned(dataset);
            } else if (dataset.name == "Temperature" && timeOf(dataset) > state.time) {
                state.time = timeOf(dataset);
                state.step = dataset.step;
                state.temperature = numbers.readFloats(dataset);
            }
        }
    }
    if (state.temperature.empty()) {
        throw std::runtime_error(path.string() + " has no temperature of a shape \"Bar\"");
    }
    return state;
}
// [/read]

// [go-on]
void goOn(const State& state, const std::filesystem::path& path) {
    using namespace Qel::Mox2;
    Model model;
    model.saveTo(path.string(), SaverOptions{true, "restart", "1.0"});
    Attributes origin;
    origin.set("Restarted after", state.step);
    model.addNode(Group, "Assembly", origin);
    const unsigned int bar = model.addNode(Shape, "Bar");
    model.addArrayProperty(Coordinates, Array2d<float>(state.coordinates.size() / 3, 3, state.coordinates),
                           bar, Step{});
    model.addArrayProperty(Connectivity2, Array1d<unsigned int>(state.connectivity), bar, Step{});
    model.addArrayProperty(Polylength2, Array1d<unsigned int>(state.nodesPerElement), bar, Step{});
    std::vector<float> temperature = state.temperature;
    for (int number = 1; number <= 3; ++number) {
        for (float& degrees : temperature) {
            degrees = 20.0F + 0.9F * (degrees - 20.0F); // the heater is off
        }
        Step step{"Cooling " + std::to_string(number), {}};
        step.attributes.set("Time", state.time + 10.0F * static_cast<float>(number));
        model.addArrayProperty("Temperature", NodeScalar, Array1d<float>(temperature), bar, step);
    }
    model.close();
}
// [/go-on]

} // namespace

int main(int argc, char** argv) try {
    const State state = readLast(argc > 1 ? argv[1] : "heated.mox");
    const std::filesystem::path path = argc > 2 ? argv[2] : "cooled.mox";
    Examples::saveChecked(path, [&](const std::filesystem::path& beside) { goOn(state, beside); });
    std::cout << "Read " << state.step << " at " << state.time << " s, saved " << path.string() << '\n';
} catch (const std::exception& error) {
    std::cerr << "restart: " << error.what() << '\n';
    return 1;
}
