#pragma once

#include <Qel/Mox2/Model.h>

#include <string>
#include <vector>

/// Saves a model that does not come from an import:
///
///     Assembly
///         Faces, moved by (10, 0, 0) and stretched by 2 along x: a quadrangle, a triangle and a quadrangle,
///             with the result Thickness that has no step
///         Cube, of eight nodes: Stress of six values at the step "Load" of time 0.1 (exactly);
///             Displacement of six values at the step "Mode 1" of 12.5 Hz
///         Empty, without anything
inline void saveForeignModel(const std::string& path) {
    namespace Mox = Qel::Mox2;
    Mox::Model model;
    model.saveTo(path, {true, "Solver", "2.1", ""});
    const auto root = model.addNode(Mox::RootGroup, "Assembly");

    Mox::NodeProperties moved;
    moved.set(Mox::Translation, std::vector<float>{10, 0, 0});
    moved.set(Mox::Scale, std::vector<float>{2, 1, 1});
    model.setNodeData(model.addNode(Mox::Group, "Moved"), moved);
    const auto faces = model.addNode(Mox::Shape, "Faces");
    const Mox::Step none;
    const Mox::Array2d<float> corners(6, 3, {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0});
    model.addArrayProperty(Mox::Coordinates, corners, faces, none);
    model.addArrayProperty(Mox::Connectivity1, Mox::Array1d<unsigned int>{0, 1, 4, 3, 0, 1, 4, 1, 2, 5, 4},
                           faces, none);
    model.addArrayProperty(Mox::Polylength1, Mox::Array1d<unsigned int>{4, 3, 4}, faces, none);
    model.addArrayProperty("Thickness", Mox::ElementScalar, Mox::Array1d<float>{0.5F, 0.25F, 0.75F}, faces,
                           none);

    model.setCurrentNodeId(root);
    const auto cube = model.addNode(Mox::Shape, "Cube");
    const Mox::Array2d<float> points(
        8, 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1});
    model.addArrayProperty(Mox::Coordinates, points, cube, none);
    model.addArrayProperty(Mox::Connectivity2, Mox::Array1d<unsigned int>{0, 1, 2, 3, 4, 5, 6, 7}, cube,
                           none);
    model.addArrayProperty(Mox::Polylength2, Mox::Array1d<unsigned int>{8}, cube, none);
    model.addArrayProperty("Grid", Mox::FourthScalarA, Mox::Array1d<float>{1}, cube, none);
    Mox::Step load{"Load", {}};
    load.attributes.set("Time (exact)", "0.1");
    model.addArrayProperty("Stress", Mox::ElementSixA, Mox::Array2d<float>(1, 6, {1, 2, 3, 4, 5, 6}), cube,
                           load);
    Mox::Step mode{"Mode 1", {}};
    mode.attributes.set("Frequency", 12.5F);
    mode.attributes.set("Category", "Vibration");
    model.addArrayProperty(Mox::DisplacementSix, Mox::Array2d<float>(8, 6, 0.125F), cube, mode);

    model.setCurrentNodeId(root);
    model.addNode(Mox::Shape, "Empty");
    model.close();
}
