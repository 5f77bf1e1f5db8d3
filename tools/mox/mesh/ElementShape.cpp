#include "ElementShape.h"

#include <algorithm>
#include <array>

namespace MoxTool {

namespace {

// Exodus goes round the middle of a solid before its top, VTK after it; the faces' order differs as well.
constexpr std::array<std::uint8_t, 15> WedgeOrder = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11};
constexpr std::array<std::uint8_t, 27> HexOrder = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                                                   18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20};

constexpr std::array Shapes = {
    ElementShape{1, 1, "SPHERE", "SPHERE", 1},
    ElementShape{1, 2, "BAR2", "BAR2", 3},
    ElementShape{1, 3, "BAR3", "BAR3", 21},
    ElementShape{2, 3, "TRI3", "TRI3", 5},
    ElementShape{2, 4, "SHELL4", "QUAD4", 9},
    ElementShape{2, 6, "TRI6", "TRI6", 22},
    ElementShape{2, 8, "SHELL8", "QUAD8", 23},
    ElementShape{2, 9, "SHELL9", "QUAD9", 28},
    ElementShape{3, 4, "TETRA4", "TETRA4", 10},
    ElementShape{3, 5, "PYRAMID5", "PYRAMID5", 14},
    ElementShape{3, 6, "WEDGE6", "WEDGE6", 13},
    ElementShape{3, 8, "HEX8", "HEX8", 12},
    ElementShape{3, 10, "TETRA10", "TETRA10", 24},
    ElementShape{3, 13, "PYRAMID13", "PYRAMID13", 27},
    ElementShape{3, 15, "WEDGE15", "WEDGE15", 26, WedgeOrder},
    ElementShape{3, 20, "HEX20", "HEX20", 25, std::span(HexOrder).first<20>()},
    ElementShape{3, 27, "HEX27", "HEX27", 29, HexOrder},
};

constexpr std::uint8_t VtkPolyVertex = 2;
constexpr std::uint8_t VtkPolygon = 7;

} // namespace

const ElementShape PolygonShape{2, 0, "NSIDED", "NSIDED", VtkPolygon};
const ElementShape UnknownShape{0, 0, "OTHER", "OTHER", VtkPolyVertex};

const ElementShape* findElementShape(int dimension, std::size_t nodes) {
    const auto* found = std::find_if(Shapes.begin(), Shapes.end(), [=](const ElementShape& shape) {
        return shape.dimension == dimension && shape.nodes == nodes;
    });
    return found == Shapes.end() ? nullptr : found;
}

} // namespace MoxTool
