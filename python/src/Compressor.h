#pragma once

#include <cstdint>
#include <string>

/// What compresses the blocks of files: zlib, or moxwriter-deflate if it is installed.
///
/// A program takes moxwriter-deflate by having its compress2() before zlib's. A module can't: Python itself brings
/// zlib's before any module is loaded. So the linker sends the writer's calls of compress2() to a function of this
/// module, which passes them on.
namespace MoxPython::Compressor {

/// Loads moxwriter-deflate the first time that it is asked for.
/// @param name "zlib" or "deflate".
/// @throws std::invalid_argument for another name, std::runtime_error if moxwriter-deflate can't be loaded.
void choose(const std::string& name);

/// The name of what the next block is compressed with. A preloaded moxwriter-deflate counts as such.
std::string current();

/// How many blocks moxwriter-deflate has compressed in this process.
std::uint64_t deflateCalls();

} // namespace MoxPython::Compressor
