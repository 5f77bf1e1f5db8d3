// docs/format/example.md shows the function below and every byte of the file that it makes.

#include "saveExample.h"

#include <Qel/Mox2/Model.h>

using namespace Qel::Mox2;

void saveExample(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true, .sourceName = "example", .sourceVersion = "1.0"});

    Attributes about;
    about.set("author", "me");
    about.set("parts", 1);
    about.set("scale", 0.5F);
    model.addNode(Group, "assembly", about);
    const unsigned int plate = model.addNode(Shape, "plate");

    const Array2d<float> corners(3, 3, {0, 0, 0, 1, 0, 0, 0, 2, 0});
    model.addArrayProperty(Coordinates, corners, plate, Step());
    model.addArrayProperty(Connectivity1, Array1d<unsigned int>{0, 1, 2}, plate, Step());
    model.addArrayProperty(Polylength1, Array1d<unsigned int>{3}, plate, Step());

    StepList steps(2);
    steps.set(0, Step{"Load", {}});
    steps.set(1, Step{"Rest", {}});
    Attributes unit;
    unit.set("Unit", "K");
    model.addArrayProperty("Heat", NodeScalar, Array1d<float>{20.0F, 20.5F, 300.0F}, plate, steps, unit);
    model.close();
}
