#pragma once

#include <filesystem>

namespace Examples {

/// Prints to stdout what a model file holds: its tree with all datasets, its streams, and its size.
///
/// @throws MoxReader::Error if the file is not a sound model file.
void printListing(const std::filesystem::path& path);

} // namespace Examples
