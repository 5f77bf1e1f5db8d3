#pragma once

#include "../common/foreignKind.h"

#include <string>

namespace MoxTool {

/// Recognises a file to import by its content; its name does not matter.
/// @return the format, never Other.
/// @throws Failure if there is no such file, if it can't be read, or if no importer reads it; then it says
///         what the file is, if that is known.
ForeignFormat importFormatOf(const std::string& path);

} // namespace MoxTool
