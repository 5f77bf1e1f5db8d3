#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace MoxTool {

/// The width of the texts in the program, and of its help where no terminal says another.
inline constexpr std::size_t TextWidth = 110;

/// The width of what is written for reading: that of the terminal, but no more than TextWidth and no less than 40;
/// without a terminal TextWidth.
/// @param terminal In characters, 0 without one; see Platform::terminalWidth().
std::size_t readableWidth(std::size_t terminal);

/// Breaks one line at blanks into lines of a width. A word that is longer has a line of its own.
/// @param width In characters.
/// @param hang  How far the second line and those after it are indented.
std::string wrapLine(std::string_view line, std::size_t width, std::size_t hang = 0);

/// Breaks paragraphs anew that were written for TextWidth.
///
/// A line that is not indented is part of a paragraph, unless the one before it ends a sentence early. An indented
/// one with a gap of two blanks in it is a term and what it means, which can go on below its meaning. Other
/// indented lines, such as commands, stay as they are.
std::string refillText(std::string_view text, std::size_t width);

} // namespace MoxTool
