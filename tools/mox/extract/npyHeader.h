#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MoxTool {

/// What precedes the numbers in a file of NumPy's format, version 1.0; a multiple of 64 bytes.
/// @param type  As NumPy writes it, such as "<f4".
/// @param width Components; with 1 the array has one dimension, otherwise two.
std::string npyHeader(std::string_view type, std::size_t items, std::uint8_t width);

} // namespace MoxTool
