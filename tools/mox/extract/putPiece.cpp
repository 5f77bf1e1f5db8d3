#include "putPiece.h"

namespace MoxTool {

namespace {

constexpr std::size_t LargePiece = 65536;

} // namespace

void putPiece(std::ostream& out, std::string& piece) {
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    piece.clear();
}

void putLargePiece(std::ostream& out, std::string& piece) {
    if (piece.size() >= LargePiece) {
        putPiece(out, piece);
    }
}

} // namespace MoxTool
