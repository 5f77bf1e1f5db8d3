#pragma once

#include <filesystem>

namespace MoxTool {

/// Makes sure that a saved file has reached the disk. The saving library does not look at the results of its
/// writes, so a full disk is noticed here, as is a dataset that was too large to be compressed.
///
/// @throws std::runtime_error or MoxReader::Error if a block has lost its content or ends beyond the end of
///                            the file, or if the tree can't be read back.
void checkSavedFile(const std::filesystem::path& path);

} // namespace MoxTool
