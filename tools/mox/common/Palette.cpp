#include "Palette.h"

#include <fmt/format.h>

#include <array>

namespace MoxTool {

std::string Palette::paint(Colour colour, std::string_view text) const {
    constexpr std::array Codes = {2, 1, 31, 32, 36};
    if (!on_) {
        return std::string(text);
    }
    return fmt::format("\x1B[{}m{}\x1B[0m", Codes[colour], text);
}

} // namespace MoxTool
