#pragma once

#include "TagIndex.h"

#include <cstddef>

namespace MoxTool {

/// A shape of a model, made from elements of a Gmsh file.
struct GmshPart {
    unsigned int geometry; ///< Its node in the model.
    std::size_t elementCount;
    TagIndex elements; ///< Places of elements by their tags.
};

} // namespace MoxTool
