#pragma once

#include "../../exodus/ExodusBlock.h"

#include <cstddef>

namespace MoxTool {

/// A shape of a model, made from an element block of an Exodus file.
struct ExodusPart {
    const ExodusBlock* block; ///< The block in the file.
    std::size_t blockIndex;   ///< Its place in the file.
    int dimension;            ///< The dimension of its elements, from 1 to 3.
    unsigned int geometry;    ///< Its node in the model.
};

} // namespace MoxTool
