#pragma once

#include "Failure.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace MoxTool {

/// Creates a file and has it filled.
/// @param path  Where to write; an existing file is replaced.
/// @param shown The name for messages, since the path may be a temporary one.
/// @param fill  Called once with the open std::ostream.
/// @throws Failure if anything can't be written; part of the file may then remain.
template <typename Fill>
void writeFile(const std::filesystem::path& path, const std::string& shown, Fill&& fill) {
    std::ofstream out(path, std::ios::binary);
    if (!out) {
        throw Failure(shown, "can't be opened for writing; check the folder's permissions");
    }
    fill(out);
    out.close();
    if (!out) {
        throw Failure(shown, "can't be written; is the disk full?");
    }
}

} // namespace MoxTool
