// Four wheels of one mesh, and a pressure that is the same for two of three steps: each array is saved once.

#include "BoxMesh.h"
#include "saveChecked.h"

#include <MoxReader/Model.h>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace Qel::Mox2;

const BoxMesh Wheel({200, 600, 600}, {4, 12, 12}); // mm; a wheel as square as can be

unsigned int addWheel(Model& model, unsigned int car, const std::string& name, float x, float y) {
    NodeProperties place;
    place.set(Translation, std::vector<float>{x, y, 0.0F});
    model.setCurrentNodeId(car);
    model.setNodeData(model.addNode(Group, name), place);
    return model.addNode(Shape, name);
}

void save(const std::filesystem::path& path) {
    SaverOptions options;
    options.overwrite = true;
    options.sourceName = "shared_arrays";
    options.sourceVersion = "1.0";
    Model model;
    model.saveTo(path.string(), options);
    const unsigned int car = model.addNode(Group, "Car");
    // [shared]
    Array1d<unsigned int> wheels(4);
    for (unsigned int i = 0; i < 4; ++i) {
        const float x = i % 2 == 0 ? 0.0F : 1500.0F;
        const float y = i < 2 ? 0.0F : 2500.0F;
        wheels[i] = addWheel(model, car, "Wheel " + std::to_string(i + 1), x, y);
    }
    Wheel.addTo(model, wheels); // the mesh for all four geometries at once

    StepList standing(2); // two steps with the same numbers
    standing.set(0, Step{"Loaded", {}});
    standing.set(1, Step{"Waiting", {}});
    const std::size_t nodes = Wheel.coordinates.rows();
    model.addArrayProperty("Pressure", NodeScalar, Array1d<float>(nodes, 2.4F), wheels, standing);
    model.addArrayProperty("Pressure", NodeScalar, Array1d<float>(nodes, 2.6F), wheels, Step{"Braking", {}});
    // [/shared]
    model.close();
}

// [count]
void countArrays(const std::filesystem::path& path) {
    const MoxReader::Model model = MoxReader::readModel(MoxReader::File(path));
    std::size_t datasets = 0;
    std::size_t arrays = 0;
    for (const MoxReader::Node& node : model.nodes()) {
        if (const MoxReader::Geometry* const geometry = node.geometry()) {
            for (const MoxReader::Dataset& dataset : geometry->datasets) {
                ++datasets;
                arrays += dataset.isLink ? 0 : 1; // a link has no numbers of its own
            }
        }
    }
    std::cout << "Saved " << path.string() << ": " << datasets << " datasets, " << arrays << " arrays\n";
}
// [/count]

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "wheels.mox";
    Examples::saveChecked(path, save);
    countArrays(path);
} catch (const std::exception& error) {
    std::cerr << "shared_arrays: " << error.what() << '\n';
    return 1;
}
