#pragma once

#include "ModelContent.h"

#include <string>

/// Whether the Exodus library was there when the tests were built.
bool canReadExodus();

/// An Exodus file as its library reads it; its steps are called as a model calls them.
ModelContent readExodus(const std::string& path);
