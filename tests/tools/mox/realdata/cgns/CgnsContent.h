#pragma once

#include "../ModelContent.h"

#include <string>

/// A CGNS file of one base as its library reads it; its steps are called as a model calls them.
ModelContent readCgns(const std::string& path);
