#pragma once

#include "../../exodus/ExodusFile.h"

#include <cstddef>

namespace MoxTool {

/// Whether a file can be a piece of the same model as the first one, by all that every piece has alike: numbers of
/// pieces, nodes and elements of the whole, and steps.
///
/// @param count The number of pieces that the names of the files give.
/// @throws Failure that names the file and what differs.
void checkPieceFits(const ExodusFile& piece, const ExodusFile& first, std::size_t count);

/// Whether a file has the variables of one kind that another piece has. Without nodes or elements to hold them it can
/// lack all of them.
/// @param other A piece that can hold them, if there is one.
/// @throws Failure that names the file and what differs.
void checkPieceVariables(const ExodusFile& piece, const ExodusFile& other, ex_entity_type type);

/// Whether a piece has anything that variables of this kind can be on. There are such pieces without, since a model
/// can have fewer elements than ranks.
bool canHoldVariables(const ExodusFile& piece, ex_entity_type type);

} // namespace MoxTool
