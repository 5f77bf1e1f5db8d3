#pragma once

#include <vector>

namespace MoxTool {

/// Elements of one type of a CGNS section, as a shape of a model.
struct CgnsPart {
    unsigned int geometry; ///< Its node in the model; 0 if it is left out by choice.
    bool hasCells;         ///< Its elements have the base's cell dimension, so results on cells are theirs.
    std::vector<unsigned int> ids; ///< The numbers of its elements in the zone, ascending.
};

} // namespace MoxTool
