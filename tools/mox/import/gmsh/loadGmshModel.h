#pragma once

#include "GmshModel.h"

#include <memory>
#include <string>

namespace MoxTool {

/// Loads the module that reads Gmsh files from the program's folder or that of its libraries, and reads a
/// file through it. The module stays loaded.
/// @throws Failure if the module or the Gmsh library is missing, or the file is damaged.
std::unique_ptr<GmshModel> loadGmshModel(const std::string& path);

} // namespace MoxTool
