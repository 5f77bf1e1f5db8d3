#pragma once

#include <MoxReader/File.h>

#include <functional>
#include <optional>
#include <string>

namespace MoxTool {

/// Called with the fraction of the work that is done, from 0 to 1.
using ProgressReport = std::function<void(double)>;

/// The first flaw of the file's index, its length or one of its blocks, in words; empty if there is none.
/// Decompresses every block, one at a time, and compares its checksum.
/// @throws MoxReader::Error with ReadFailed only.
std::optional<std::string> findBlockFlaw(const MoxReader::File& file, const ProgressReport& report);

/// Likewise, but without looking into the blocks.
std::optional<std::string> findIndexFlaw(const MoxReader::File& file);

/// A block that did not reach the disk to its end, in words; empty if there is none. What was never written reads as
/// zeros, and the checksum at the end of a block is hardly ever zero; only where it is, the block is decompressed.
/// @param file Without a flaw of its index.
std::optional<std::string> findUnwrittenBlock(const MoxReader::File& file);

} // namespace MoxTool
