#pragma once

#include "ModelContent.h"

#include <string>

/// Whether the Exodus library was available when the tests were built.
bool canReadExodus();

/// An Exodus file as its library reads it; its steps have the names that a model gives them.
ModelContent readExodus(const std::string& path);
