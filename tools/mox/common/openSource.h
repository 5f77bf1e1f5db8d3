#pragma once

#include <MoxReader/Source.h>

#include <memory>
#include <string>

namespace MoxTool {

/// The bytes of a file, or all of stdin for the path "-". A file's bytes are read when they are needed; those
/// of stdin and of a pipe are kept in memory.
/// @throws Failure if the file can't be opened or stdin fails.
std::shared_ptr<MoxReader::Source> openSource(const std::string& path);

} // namespace MoxTool
