#include "npyHeader.h"

#include <fmt/format.h>

namespace MoxTool {

std::string npyHeader(std::string_view type, std::size_t items, std::uint8_t width) {
    constexpr std::size_t Front = 6 /*magic*/ + 2 /*version*/ + 2 /*length*/;
    constexpr std::size_t Alignment = 64;
    const auto shape = width == 1 ? fmt::format("({},)", items) : fmt::format("({}, {})", items, width);
    auto text = fmt::format("{{'descr': '{}', 'fortran_order': False, 'shape': {}, }}", type, shape);
    const auto size = (Front + text.size() + 1 + Alignment - 1) / Alignment * Alignment;
    text.resize(size - Front - 1, ' ');
    text += '\n';
    std::string header("\x93NUMPY\x01\x00", 8);
    header += static_cast<char>(text.size() & 0xFFU);
    header += static_cast<char>(text.size() >> 8U);
    return header + text;
}

} // namespace MoxTool
