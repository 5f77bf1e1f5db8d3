// A bar of two hexahedra in an assembly: the smallest model that is of use. No results yet.

#include "saveChecked.h"

#include <Qel/Mox2/Model.h>

#include <exception>
#include <filesystem>
#include <iostream>

namespace {

using namespace Qel::Mox2;

void save(const std::filesystem::path& path) {
    SaverOptions options;
    options.overwrite = true; // a former file of that name is replaced
    options.sourceName = "first_model";
    options.sourceVersion = "1.0";

    Model model;
    model.saveTo(path.string(), options);
    Attributes units;
    units.set("Units", "mm, N, tonne, s");
    model.addNode(Group, "Assembly", units);
    const unsigned int bar = model.addNode(Shape, "Bar"); // the id of the shape's geometry

    const Array2d<float> nodes(12, 3, {0, 0, 0,  10, 0, 0,  10, 10, 0,  0, 10, 0,  // x, y, z of each node
                                       0, 0, 10, 10, 0, 10, 10, 10, 10, 0, 10, 10, //
                                       0, 0, 20, 10, 0, 20, 10, 10, 20, 0, 10, 20});
    const Array1d<unsigned int> hexahedra{0, 1, 2, 3, 4, 5, 6,  7, // eight nodes of each, counted from 0
                                          4, 5, 6, 7, 8, 9, 10, 11};
    const Array1d<unsigned int> nodesPerElement(2, 8U); // in parentheses: two numbers, each of them 8
    model.addArrayProperty(Coordinates, nodes, bar, Step{});
    model.addArrayProperty(Connectivity2, hexahedra, bar, Step{});
    model.addArrayProperty(Polylength2, nodesPerElement, bar, Step{});
    model.close();
}

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "first.mox";
    Examples::saveChecked(path, save);
    std::cout << "Saved " << path.string() << '\n';
} catch (const std::exception& error) {
    std::cerr << "first_model: " << error.what() << '\n';
    return 1;
}
