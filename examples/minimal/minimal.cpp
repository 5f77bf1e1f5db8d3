#include <Qel/Mox2/Model.h>

#include <exception>
#include <iostream>

int main(int argc, char** argv) try {
    using namespace Qel::Mox2;
    SaverOptions options;
    options.overwrite = true;

    Model model;
    model.saveTo(argc > 1 ? argv[1] : "cube.mox", options);
    model.addNode(Group, "Assembly");
    const unsigned int cube = model.addNode(Shape, "Cube");

    const Array2d<float> corners(8, 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0,   // the lower face
                                        0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1}); // the upper face
    model.addArrayProperty(Coordinates, corners, cube, Step{});
    model.addArrayProperty(Connectivity2, Array1d<unsigned int>{0, 1, 2, 3, 4, 5, 6, 7}, cube, Step{});
    model.addArrayProperty(Polylength2, Array1d<unsigned int>{8}, cube, Step{});

    const Array1d<float> cold(8, 20.0F), warm{20, 20, 20, 20, 80, 80, 80, 80};
    model.addArrayProperty("Temperature", NodeScalar, cold, cube, Step{"Step 1", {}});
    model.addArrayProperty("Temperature", NodeScalar, warm, cube, Step{"Step 2", {}});
    model.close();
} catch (const std::exception& error) {
    std::cerr << "minimal: " << error.what() << '\n';
    return 1;
}
