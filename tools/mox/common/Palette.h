#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// Colours for text on stdout, or none.
class Palette {
public:
    enum Colour { Dim, Bold, Red, Green, Cyan };

    /// @param on Whether paint() does anything, see Terminal::outputColours().
    explicit Palette(bool on) : on_(on) {}

    std::string paint(Colour colour, std::string_view text) const;

private:
    bool on_;
};

} // namespace MoxTool
