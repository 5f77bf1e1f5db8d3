#include "cellKinds.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

namespace {

const std::vector<CellKind> Kinds = {
    {1, 1, 1, "SPHERE"},      {3, 1, 2, "BAR2"},    {21, 1, 3, "BAR3"},     {5, 2, 3, "TRI3"},
    {22, 2, 6, "TRI6"},       {9, 2, 4, "SHELL4"},  {23, 2, 8, "SHELL8"},   {28, 2, 9, "SHELL9"},
    {7, 2, 0, "NSIDED"},      {10, 3, 4, "TETRA4"}, {24, 3, 10, "TETRA10"}, {14, 3, 5, "PYRAMID5"},
    {27, 3, 13, "PYRAMID13"}, {13, 3, 6, "WEDGE6"}, {26, 3, 15, "WEDGE15"}, {12, 3, 8, "HEX8"},
    {25, 3, 20, "HEX20"},     {29, 3, 27, "HEX27"},
};

// Corners have the same order in all formats. For each further node, these are the corners between which it
// lies, by the manuals of the formats; lines and faces are left out, since all formats agree on them.
struct FurtherNodes {
    std::size_t corners;
    std::map<NodeOrdering, std::string> nodes;
};

const std::vector<FurtherNodes> SolidKinds = {
    {4,
     {{NodeOrdering::Exodus, "01 12 02 03 13 23"},
      {NodeOrdering::Vtk, "01 12 02 03 13 23"},
      {NodeOrdering::Cgns, "01 12 02 03 13 23"},
      {NodeOrdering::Gmsh, "01 12 02 03 23 13"}}},
    {5,
     {{NodeOrdering::Exodus, "01 12 23 03 04 14 24 34"},
      {NodeOrdering::Vtk, "01 12 23 03 04 14 24 34"},
      {NodeOrdering::Cgns, "01 12 23 03 04 14 24 34"},
      {NodeOrdering::Gmsh, "01 03 04 12 14 23 24 34"}}},
    {6,
     {{NodeOrdering::Exodus, "01 12 02 03 14 25 34 45 35"},
      {NodeOrdering::Vtk, "01 12 02 34 45 35 03 14 25"},
      {NodeOrdering::Cgns, "01 12 02 03 14 25 34 45 35"},
      {NodeOrdering::Gmsh, "01 02 03 12 14 25 34 35 45"}}},
    {8,
     {{NodeOrdering::Exodus, "01 12 23 03 04 15 26 37 45 56 67 47 01234567 0123 4567 0347 1256 0145 2367"},
      {NodeOrdering::Vtk, "01 12 23 03 45 56 67 47 04 15 26 37 0347 1256 0145 2367 0123 4567 01234567"},
      {NodeOrdering::Cgns, "01 12 23 03 04 15 26 37 45 56 67 47 0123 0145 1256 2367 0347 4567 01234567"},
      {NodeOrdering::Gmsh, "01 03 04 12 15 23 26 37 45 47 56 67 0123 0145 0347 1256 2367 4567 01234567"}}},
};

const std::map<int, std::size_t> CornersOfSolids = {{24, 4}, {27, 5}, {26, 6}, {25, 8}, {29, 8}};

Names furtherNodes(std::size_t corners, NodeOrdering ordering) {
    const auto solid = std::find_if(SolidKinds.begin(), SolidKinds.end(),
                                    [corners](const auto& entry) { return entry.corners == corners; });
    std::istringstream words(solid->nodes.at(ordering));
    return {std::istream_iterator<std::string>(words), {}};
}

// For each node of a solid in one order its place in another.
std::vector<std::size_t> placesOf(int vtkCell, NodeOrdering from, NodeOrdering to) {
    const auto nodes = cellKind(vtkCell).nodes;
    const auto corners = CornersOfSolids.at(vtkCell);
    const auto source = furtherNodes(corners, from);
    const auto target = furtherNodes(corners, to);
    std::vector<std::size_t> places;
    for (std::size_t node = 0; node < nodes; ++node) {
        const auto found =
            node < corners ? source.end() : std::find(source.begin(), source.end(), target[node - corners]);
        places.push_back(node < corners ? node : corners + static_cast<std::size_t>(found - source.begin()));
    }
    return places;
}

// Quadrilaterals are shells if there is a third dimension.
std::string firstLetters(std::string type) {
    type.resize(3);
    std::transform(type.begin(), type.end(), type.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return type == "QUA" ? "SHE" : type;
}

} // namespace

const CellKind& cellKind(int vtkCell) {
    const auto found = std::find_if(Kinds.begin(), Kinds.end(),
                                    [vtkCell](const auto& kind) { return kind.vtkCell == vtkCell; });
    if (found == Kinds.end()) {
        throw std::out_of_range("no kind of elements for VTK cell " + std::to_string(vtkCell));
    }
    return *found;
}

int vtkCellOf(const std::string& type, std::int64_t nodesPerElement) {
    const auto letters = firstLetters(type);
    for (const auto& kind : Kinds) {
        const bool fits = kind.nodes == 0 || kind.nodes == static_cast<std::size_t>(nodesPerElement);
        if (fits && firstLetters(kind.exodusType) == letters) {
            return kind.vtkCell;
        }
    }
    throw std::out_of_range("no VTK cell for elements of type " + type);
}

std::vector<std::int64_t> nodesInOrder(const BlockContent& block, NodeOrdering from, NodeOrdering to) {
    if (!CornersOfSolids.contains(block.vtkCell)) {
        return block.nodes;
    }
    const auto places = placesOf(block.vtkCell, from, to);
    std::vector<std::int64_t> nodes;
    for (std::size_t first = 0; first < block.nodes.size(); first += places.size()) {
        for (const auto place : places) {
            nodes.push_back(block.nodes[first + place]);
        }
    }
    return nodes;
}
