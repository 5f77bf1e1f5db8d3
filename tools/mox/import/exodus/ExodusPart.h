#pragma once

#include "../../exodus/ExodusFile.h"

#include <Qel/Mox2/Array1d.h>

#include <cstddef>
#include <vector>

namespace MoxTool {

/// An element block that a model has taken.
struct ImportedPart {
    const ExodusBlock* block; ///< In the file.
    std::size_t blockIndex;   ///< Its place there.
    int dimension;            ///< Of its elements, from 1 to 3.
    unsigned int geometry;    ///< Its node in the model.
};

/// What the results of a file are attached to.
struct ImportedMesh {
    std::vector<ImportedPart> parts;
    Qel::Mox2::Array1d<unsigned int> geometries; ///< Of all parts.
};

} // namespace MoxTool
