// A bridge, a deck on two piers, from a list of paths; colours, places, attributes; a load in three steps.

#include "BoxMesh.h"
#include "saveChecked.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;

const BoxMesh SlabMesh({20000, 4000, 500}, {40, 8, 1}); // mm

// [tree]
Array1d<unsigned int> addTree(Model& model) {
    // A path that ends in "/" is a group, any other a shape. Groups on the way are made as well.
    const std::vector<std::string> paths{"/Bridge/Piers/", "/Bridge/Deck/Slab", "/Bridge/Piers/North/Pier",
                                         "/Bridge/Piers/South/Pier"};
    const Array1d<unsigned int> ids = model.addAssemblyComponents(paths); // one for each path, in order
    SlabMesh.addTo(model, ids[1]);
    BoxMesh({1000, 4000, 6000}, {2, 8, 12}).addTo(model, Array1d<unsigned int>{ids[2], ids[3]});
    return ids;
}
// [/tree]

// [load]
void addLoad(Model& model, unsigned int slab) {
    for (const float load : {100.0F, 200.0F, 300.0F}) { // kN
        Array2d<float> displacement(SlabMesh.coordinates.rows(), 3, 0.0F);
        for (std::size_t i = 0; i < displacement.rows(); ++i) {
            const float along = (SlabMesh.coordinates(i, 0) - 10000.0F) / 8500.0F; // -1 and 1: the piers
            displacement(i, 2) = -0.02F * load * std::max(0.0F, 1.0F - along * along);
        }
        Step step{"Load " + std::to_string(static_cast<int>(load)), {}};
        step.attributes.set("Load", load);
        model.addArrayProperty(DisplacementVector, displacement, slab, step);
    }
}
// [/load]

// [data]
void place(Model& model, const std::string& group, float x, float z) {
    NodeProperties properties;
    properties.set(Translation, std::vector<float>{x, 0.0F, z}); // of all that is below the group
    model.setNodeData(model.getNodeId(group), properties);
}

void paint(Model& model, const std::string& shape, const std::vector<float>& colour) {
    NodeProperties properties;
    properties.set(DiffuseColor, colour); // red, green, blue, from 0 to 1
    model.setNodeData(model.getNodeId(shape), properties);
}

void describe(Model& model) {
    place(model, "/Bridge/Deck", 0, 6000);
    place(model, "/Bridge/Piers/North", 500, 0);
    place(model, "/Bridge/Piers/South", 18500, 0);
    paint(model, "/Bridge/Deck/Slab", {0.75F, 0.75F, 0.72F});
    for (const char* const pier : {"/Bridge/Piers/North/Pier", "/Bridge/Piers/South/Pier"}) {
        paint(model, pier, {0.6F, 0.4F, 0.3F});
    }
    Attributes attributes;
    attributes.set("Concrete", "C35/45");
    attributes.set("Count", 2);
    model.setNodeData(model.getNodeId("/Bridge/Piers"), NodeProperties(), attributes);
}
// [/data]

void save(const std::filesystem::path& path) {
    Model model;
    model.saveTo(path.string(), SaverOptions{true, "assembly_from_paths", "1.0"});
    const Array1d<unsigned int> ids = addTree(model);
    describe(model);
    addLoad(model, ids[1]);
    model.close();
}

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "bridge.mox";
    Examples::saveChecked(path, save);
    std::cout << "Saved " << path.string() << '\n';
} catch (const std::exception& error) {
    std::cerr << "assembly_from_paths: " << error.what() << '\n';
    return 1;
}
