#pragma once

#include <Qel/Mox2/Model.h>

#include <string>

/// Saves a model with steps:
///
///     Root, Group 1
///         A, Shape 2 with Geometry 3
///         B, Shape 4 with Geometry 5
///
/// T on the nodes: at B, then at A, "Step 1" to "Step 5" at times 0, 0.25, 0.5, 0.75 and 1, with the numbers
/// (n, -n) at B and (10 n, -10 n) at A; A lacks steps 2 and 4. After these "Mode" at B in "Mode 1" and
/// "Mode 2", which are vibrations of the frequencies 12.5 and 20.
inline void saveSteppedModel(const std::string& path) {
    namespace Mox = Qel::Mox2;
    Mox::Model model;
    model.saveTo(path, {true, "", "", ""});
    const auto root = model.addNode(Mox::Group, "Root");
    const auto a = model.addNode(Mox::Shape, "A");
    model.setCurrentNodeId(root);
    const auto b = model.addNode(Mox::Shape, "B");
    for (int n = 1; n <= 5; ++n) {
        Mox::Step step{"Step " + std::to_string(n), {}};
        step.attributes.set("Time", 0.25F * static_cast<float>(n - 1));
        const auto number = static_cast<float>(n);
        model.addArrayProperty("T", Mox::NodeScalar, Mox::Array1d<float>{number, -number}, b, step);
        if (n % 2 == 1) {
            model.addArrayProperty("T", Mox::NodeScalar, Mox::Array1d<float>{10 * number, -10 * number}, a,
                                   step);
        }
    }
    for (int n = 1; n <= 2; ++n) {
        Mox::Step mode{"Mode " + std::to_string(n), {}};
        mode.attributes.set("Frequency", n == 1 ? 12.5F : 20.0F);
        mode.attributes.set("Category", "Vibration");
        model.addArrayProperty("Mode", Mox::NodeVector, Mox::Array2d<float>(2, 3, {1, 2, 3, 4, 5, 6}), b,
                               mode);
    }
    model.close();
}
