#pragma once

#include <Qel/Mox2/Model.h>

#include <limits>
#include <string>

/// Saves a small model that has a little of everything:
///
///     Assembly, Group 1, moved by (1, 2, 3), with three attributes
///         Cube, Shape 2, red
///             Cube, Geometry 3: Coordinates (with numbers that are not finite); Temperature at two steps,
///                 the second a link
///         a Group 4 whose name has control characters and a letter of two bytes
inline void saveSampleModel(const std::string& path) {
    namespace Mox = Qel::Mox2;
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

    Mox::Attributes attributes;
    attributes.set("Count", 7);
    attributes.set("Mass", 0.1F);
    attributes.set("Title", "a \"b\"\n");

    Mox::Model model;
    model.saveTo(path, {true, "Solver", "2.1", ""});
    const auto root = model.addNode(Mox::Group, "Assembly", attributes);
    Mox::NodeProperties moved;
    moved.set(Mox::Translation, std::vector<float>{1, 2, 3});
    model.setNodeData(root, moved);

    const auto cube = model.addNode(Mox::Shape, "Cube");
    Mox::NodeProperties red;
    red.set(Mox::DiffuseColor, std::vector<float>{1, 0, 0});
    model.setNodeData(cube, red);
    const Mox::Array2d<float> points(2, 3, {0, 0.1F, 1e20F, -Infinity, NaN, -0.0F});
    model.addArrayProperty(Mox::Coordinates, points, cube, Mox::Step{});
    Mox::StepList steps(2);
    steps.set(0, {"Step 1", {}});
    steps.set(1, {"Step 2", {}});
    model.addArrayProperty("Temperature", Mox::NodeScalar, Mox::Array1d<float>{20, 80}, cube, steps);

    model.setCurrentNodeId(root);
    model.addNode(Mox::Group, "\x1B[2Jü\n");
    model.close();
}
