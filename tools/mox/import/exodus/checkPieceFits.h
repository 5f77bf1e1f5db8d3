#pragma once

#include "../../exodus/ExodusFile.h"

#include <cstddef>

namespace MoxTool {

/// Whether a file can be a piece of the same model as the first one, by all that every piece has alike: numbers of
/// pieces, nodes and elements of the whole, variables, and steps.
///
/// @param count The number of pieces that the names of the files give.
/// @throws Failure that names the file and what differs.
void checkPieceFits(const ExodusFile& piece, const ExodusFile& first, std::size_t count);

} // namespace MoxTool
