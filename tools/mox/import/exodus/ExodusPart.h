#pragma once

#include "../../exodus/ExodusBlock.h"

#include <cstddef>

namespace MoxTool {

/// A shape of a model that was made of an element block of an Exodus file.
struct ExodusPart {
    const ExodusBlock* block; ///< In the file.
    std::size_t blockIndex;   ///< Its place there.
    int dimension;            ///< Of its elements, from 1 to 3.
    unsigned int geometry;    ///< Its node in the model.
};

} // namespace MoxTool
