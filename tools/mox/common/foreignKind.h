#pragma once

#include <MoxReader/Source.h>

#include <string>

namespace MoxTool {

/// What a file that is not a MOX file is, by its first bytes, with what can be done about it, such as "an
/// Exodus II file; mox import converts it". Empty for a MOX file and for a file of no known kind.
/// @throws MoxReader::Error with ReadFailed only.
std::string foreignKind(MoxReader::Source& source);

/// @throws Failure if the file is of a known kind other than MOX.
void refuseForeignFile(const std::string& path, MoxReader::Source& source);

} // namespace MoxTool
