#include "writeNumbers.h"

#include "../common/numberText.h"
#include "npyHeader.h"

#include <fmt/format.h>

#include <bit>
#include <string>

namespace MoxTool {

namespace {

constexpr std::size_t PieceSize = 65536; ///< Bytes that are collected before they are written.

void appendText(std::string& piece, float number) {
    piece += numberText(number);
}

void appendText(std::string& piece, std::uint32_t number) {
    piece += fmt::format_int(number).c_str();
}

template <typename T>
void appendBytes(std::string& piece, T number) {
    const auto word = std::bit_cast<std::uint32_t>(number);
    for (unsigned shift = 0; shift < 32; shift += 8) {
        piece += static_cast<char>((word >> shift) & 0xFFU);
    }
}

void put(std::ostream& out, std::string& piece) {
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    piece.clear();
}

/// @param append Called with the piece, a number and its place; adds the number's form to the piece.
template <typename T, typename Append>
void writeEach(std::ostream& out, const std::vector<T>& numbers, Append append) {
    std::string piece;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        append(piece, numbers[i], i);
        if (piece.size() >= PieceSize) {
            put(out, piece);
        }
    }
    put(out, piece);
}

template <typename T>
void writeCsv(std::ostream& out, const std::vector<T>& numbers, std::uint8_t width) {
    writeEach(out, numbers, [width](std::string& piece, T number, std::size_t i) {
        appendText(piece, number);
        piece += (i + 1) % width == 0 ? '\n' : ',';
    });
}

template <typename T>
void writeRaw(std::ostream& out, const std::vector<T>& numbers) {
    writeEach(out, numbers, [](std::string& piece, T number, std::size_t) { appendBytes(piece, number); });
}

template <typename T>
void writeAs(std::ostream& out, const std::vector<T>& numbers, std::uint8_t width, NumberFormat format) {
    if (format == NumberFormat::Csv) {
        return writeCsv(out, numbers, width);
    }
    if (format == NumberFormat::Npy) {
        out << npyHeader(std::is_same_v<T, float> ? "<f4" : "<u4", width == 0 ? 0 : numbers.size() / width,
                         width);
    }
    writeRaw(out, numbers);
}

} // namespace

void writeNumbers(std::ostream& out, const Numbers& numbers, std::uint8_t width, NumberFormat format) {
    std::visit([&](const auto& values) { writeAs(out, values, width, format); }, numbers);
}

} // namespace MoxTool
