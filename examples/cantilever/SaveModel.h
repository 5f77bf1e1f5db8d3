#pragma once

#include "Analysis.h"

#include <filesystem>

namespace Cantilever {

/// Saves the analysed model, replacing a file of that name only when the new one is complete.
///
/// Node tables hold the nodes of the whole mesh and are written once: all solid parts refer to the same ones.
/// Elements and their results belong to the part. The nuts behind the wall are for show: one set of arrays,
/// which four groups place by their translation.
///
/// @throws Qel::Exception::Exception if the model can't be saved.
/// @throws std::runtime_error if the file is not whole: the disk is full, for example.
/// @throws std::filesystem::filesystem_error if the complete file can't get its name.
void saveModel(const Analysis& analysis, const std::filesystem::path& path);

} // namespace Cantilever
