#pragma once

#include <string>

namespace MoxTool {

/// A number as JSON: the fewest digits that read back as the same float, and of those the nearest. From 1e-4
/// up to 1e16 without an exponent, with ".0" if it is whole; otherwise such as 1e+16 and 1.5e-05. Numbers
/// that are not finite are the texts "nan", "inf" and "-inf".
std::string floatText(float number);
/// Likewise for doubles.
std::string floatText(double number);

} // namespace MoxTool
