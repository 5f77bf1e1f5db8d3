#pragma once

#include "../ModelContent.h"

#include <string>

/// A CGNS file of one base as its library reads it; its steps have the names that a model gives them.
ModelContent readCgns(const std::string& path);
