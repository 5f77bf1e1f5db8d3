#pragma once

#include "ExodusPart.h"

#include <Qel/Mox2/Array1d.h>

#include <vector>

namespace MoxTool {

/// What the results of an Exodus file are attached to in a model.
struct ExodusMesh {
    std::vector<ExodusPart> parts;
    Qel::Mox2::Array1d<unsigned int> geometries; ///< The geometries of all parts.
};

} // namespace MoxTool
