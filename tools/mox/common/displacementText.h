#pragma once

#include <MoxReader/RawIndex.h>

#include <optional>
#include <string>

namespace MoxTool {

/// The Index Blocks that a file's writer took to lie at offset 0, so that all blocks after them lie too low.
std::vector<const MoxReader::IndexTable*> findRestarts(const MoxReader::RawIndex& index);

/// Describes, in one line, a file whose writer placed blocks too low; empty for any other file.
std::optional<std::string> displacementText(const MoxReader::RawIndex& index);

} // namespace MoxTool
