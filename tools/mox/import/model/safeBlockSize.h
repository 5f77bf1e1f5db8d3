#pragma once

#include <cstdint>
#include <optional>

namespace MoxTool {

/// The size of blocks to save datasets with of which the largest so far has so many bytes: no dataset fills a block by
/// itself, also if one comes that is somewhat larger, and no block becomes too large to be compressed. Nothing if
/// there is no such size.
std::optional<std::uint32_t> safeBlockSize(std::uint64_t largest);

} // namespace MoxTool
