#pragma once

namespace Qel::Mox2 {

/// What a NodeProperties can set on a node. Colours are red, green, blue, each from 0 to 1.
enum PropertyType : int {
    Translation = 0,      ///< Group, 3 floats: the translation. Initially (0, 0, 0).
    Rotation = 1,         ///< Group, 4 floats: the rotation's axis and its angle. Initially (0, 0, 1, 0).
    Scale = 2,            ///< Group, 3 floats: the scale. Initially (1, 1, 1).
    DiffuseColor = 3,     ///< Shape, 3 or 4 floats; the fourth is ignored. Initially (0.8, 0.8, 0.8).
    SpecularColor = 4,    ///< Shape, 3 or 4 floats; the fourth is ignored. Initially (0, 0, 0).
    EmissiveColor = 5,    ///< Shape, exactly 3 floats. Initially (0, 0, 0).
    AmbientColor = 6,     ///< Shape, exactly 3 floats. Initially (0.16, 0.16, 0.16).
    Transparency = 7,     ///< Shape, one float. Initially 0.
    AmbientIntensity = 8, ///< Shape, one float: the ambient colour becomes the diffuse colour times it.
    Shininess = 9,        ///< Shape, one float. Initially 0.2.
    ShapeSwitch = 10,     ///< Always refused by setNodeData().
};

} // namespace Qel::Mox2
