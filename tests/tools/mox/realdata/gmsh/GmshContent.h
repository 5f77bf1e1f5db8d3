#pragma once

#include "../ModelContent.h"

#include <string>

/// A Gmsh file as its library reads it; its steps and blocks have the names that a model gives them. Views of
/// 9 values are assumed to be symmetric.
ModelContent readGmsh(const std::string& path);
