#pragma once

#include <ostream>
#include <string>

namespace MoxTool {

// Output is collected in pieces, since a call of the stream for each number would take most of the time.

/// Writes the piece and empties it.
void putPiece(std::ostream& out, std::string& piece);

/// The same, if there is enough in it for a call to pay.
void putLargePiece(std::ostream& out, std::string& piece);

} // namespace MoxTool
