#pragma once

#include <filesystem>

namespace Examples {

/// Makes sure that a saved file is whole. The library does not look at the results of its writes, so a full
/// disk is noticed here, and so are arrays that were too large for the size of the file's blocks.
///
/// Takes the time of decompressing the file, and memory for one block of it.
/// @throws std::runtime_error that says what is wrong.
void checkSaved(const std::filesystem::path& path);

} // namespace Examples
