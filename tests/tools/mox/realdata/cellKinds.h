#pragma once

#include "ModelContent.h"

#include <cstdint>
#include <string>
#include <vector>

/// The elements that a VTK cell of a certain number represents.
struct CellKind {
    int vtkCell;
    int dimension;
    std::size_t nodes; ///< 0 for polygons, each of which has its own number.
    std::string exodusType;
};

/// @param vtkCell A cell that an export knows.
const CellKind& cellKind(int vtkCell);

/// @param type A type of an Exodus file; only the first three letters count, in any case.
int vtkCellOf(const std::string& type, std::int64_t nodesPerElement);

/// The nodes of all elements of a block, converted from one format's order into another's.
std::vector<std::int64_t> nodesInOrder(const BlockContent& block, NodeOrdering from, NodeOrdering to);
