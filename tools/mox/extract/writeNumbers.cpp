#include "writeNumbers.h"

#include "npyHeader.h"
#include "putPiece.h"

#include <bit>
#include <string>

namespace MoxTool {

namespace {

template <typename T>
void appendBytes(std::string& piece, T number) {
    const auto word = std::bit_cast<std::uint32_t>(number);
    for (unsigned shift = 0; shift < 32; shift += 8) {
        piece += static_cast<char>((word >> shift) & 0xFFU);
    }
}

template <typename T>
void writeRaw(std::ostream& out, const std::vector<T>& numbers) {
    std::string piece;
    for (const T number : numbers) {
        appendBytes(piece, number);
        putLargePiece(out, piece);
    }
    putPiece(out, piece);
}

} // namespace

void writeNumbers(std::ostream& out, const NumberTable& table, NumberFormat format) {
    if (format == NumberFormat::Npy) {
        const bool areFloats = std::holds_alternative<std::vector<float>>(table.numbers);
        out << npyHeader(areFloats ? "<f4" : "<u4", table.rows(), static_cast<std::uint8_t>(table.width));
    }
    std::visit([&](const auto& numbers) { writeRaw(out, numbers); }, table.numbers);
}

} // namespace MoxTool
