#pragma once

#include "random/Support/PlainNode.h"

#include <string>

namespace RandomUse {

/// Reads a finished file with the independent reader.
/// @return the first thing in which the file is not as expected; empty if there is none.
std::string fileDifference(const std::string& path, const PlainFile& expected);

} // namespace RandomUse
