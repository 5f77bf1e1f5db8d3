#pragma once

#include <string>

/// What compresses the files that this process saves: "zlib", or "deflate", which stands for libdeflate and is faster.
namespace MoxTool::Compressor {

/// Deflate if mox was built with it.
std::string preferred();

/// Why a compressor can't be used; empty if it can.
std::string problemWith(const std::string& compressor);

/// Counts for all that is saved afterwards.
void choose(const std::string& compressor);

/// What compresses now, going by what has been compressed: deflate once it has compressed anything.
std::string used();

} // namespace MoxTool::Compressor
