// A long run that saves a file for every few steps. The mesh is in the first one alone; mox join makes one file.

#include "saveChecked.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace Qel::Mox2;

constexpr int StepsOfAFile = 4;
constexpr std::size_t Nodes = 1000;

void addMesh(Model& model, unsigned int cable) {
    Array2d<float> coordinates(Nodes, 3, 0.0F);
    Array1d<unsigned int> lines(2 * (Nodes - 1));
    for (std::size_t i = 0; i < Nodes; ++i) {
        coordinates(i, 0) = static_cast<float>(i);
    }
    for (unsigned int i = 0; i < lines.size(); ++i) {
        lines[i] = (i + 1) / 2; // 0, 1, 1, 2, 2, 3 ...
    }
    model.addArrayProperty(Coordinates, coordinates, cable, Step{});
    model.addArrayProperty(Connectivity0, lines, cable, Step{});
    model.addArrayProperty(Polylength0, Array1d<unsigned int>(Nodes - 1, 2U), cable, Step{});
}

// [file]
// Every file has the same tree: the root and the shape have the same names and types.
void saveFile(const std::filesystem::path& path, int file) {
    Model model;
    model.saveTo(path.string(), SaverOptions{true, "mesh_once", "1.0"});
    model.addNode(Group, "Assembly");
    const unsigned int cable = model.addNode(Shape, "Cable");
    if (file == 0) {
        addMesh(model, cable);
    }
    for (int i = 1; i <= StepsOfAFile; ++i) {
        const int number = file * StepsOfAFile + i;
        Step step{"Step " + std::to_string(number), {}}; // no step is in two files
        step.attributes.set("Time", static_cast<float>(number));
        Array2d<float> displacement(Nodes, 3, static_cast<float>(number));
        model.addArrayProperty(DisplacementVector, displacement, cable, step);
    }
    model.close(); // from here on these steps are safe
}
// [/file]

} // namespace

int main(int argc, char** argv) try {
    const std::string stem = argc > 1 ? argv[1] : "run";
    for (int file = 0; file < 3; ++file) {
        Examples::saveChecked(stem + "." + std::to_string(file) + ".mox",
                              [file](const std::filesystem::path& beside) { saveFile(beside, file); });
    }
    std::cout << "Saved three files\n";
} catch (const std::exception& error) {
    std::cerr << "mesh_once: " << error.what() << '\n';
    return 1;
}
