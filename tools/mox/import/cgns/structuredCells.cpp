#include "structuredCells.h"

#include <array>
#include <cstddef>

namespace MoxTool {

namespace {

// The corners of a hexahedron, in the order of its nodes, as steps along the three indices. The first two are
// those of a line, the first four those of a quadrilateral.
constexpr std::array<std::array<std::size_t, 3>, 8> Corners = {{
    {0, 0, 0},
    {1, 0, 0},
    {1, 1, 0},
    {0, 1, 0},
    {0, 0, 1},
    {1, 0, 1},
    {1, 1, 1},
    {0, 1, 1},
}};

} // namespace

ElementTable structuredCells(const CgnsZone& zone) {
    ElementTable table;
    table.dimension = zone.indexCount;
    const auto corners = std::size_t{1} << zone.indexCount;
    const auto width = static_cast<std::size_t>(zone.vertexExtents[0]);
    const auto height = static_cast<std::size_t>(zone.vertexExtents[1]);
    for (std::size_t cell = 0; cell < zone.cells(); ++cell) {
        const auto columns = static_cast<std::size_t>(zone.cellExtents[0]);
        const auto rows = static_cast<std::size_t>(zone.cellExtents[1]);
        const auto i = cell % columns;
        const auto j = cell / columns % rows;
        const auto k = cell / columns / rows;
        for (std::size_t corner = 0; corner < corners; ++corner) {
            const auto& step = Corners[corner];
            table.connectivity.push_back(static_cast<unsigned int>((k + step[2]) * width * height +
                                                                   (j + step[1]) * width + i + step[0]));
        }
        table.polylength.push_back(static_cast<unsigned int>(corners));
        table.ids.push_back(static_cast<unsigned int>(cell + 1));
    }
    return table;
}

} // namespace MoxTool
