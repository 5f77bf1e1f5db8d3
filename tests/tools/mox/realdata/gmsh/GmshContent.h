#pragma once

#include "../ModelContent.h"

#include <string>

/// A Gmsh file as its library reads it; its steps and blocks are called as a model calls them. Views of 9
/// values are taken to be symmetric.
ModelContent readGmsh(const std::string& path);
