#pragma once

#include <MoxReader/Source.h>

#include <memory>
#include <string>

namespace MoxTool {

/// The bytes of a file, or all of stdin for the path "-". Bytes of a file are read where they are asked for;
/// those of stdin stand in memory.
/// @throws Failure if the file can't be opened or stdin fails.
std::shared_ptr<MoxReader::Source> openSource(const std::string& path);

} // namespace MoxTool
