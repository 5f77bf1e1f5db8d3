#pragma once

#include <Qel/Mox2/Attributes.h>

#include <vector>

namespace MoxTool {

/// Elements of one dimension, as a model keeps them.
struct ElementTable {
    int dimension = 0;                      ///< From 0, for single nodes, to 3.
    std::vector<unsigned int> connectivity; ///< Places of nodes, from 0, element by element.
    std::vector<unsigned int> polylength;   ///< The number of nodes of each element.
    std::vector<unsigned int> ids;          ///< One for each element.
    Qel::Mox2::Attributes attributes;       ///< Stored with the connectivity.
};

} // namespace MoxTool
