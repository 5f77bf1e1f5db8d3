#pragma once

#include <string>

namespace MoxTool {

/// The shortest decimal text that reads back as the same float, such as 0.1, 1e+20 or -0; "nan", "inf" and
/// "-inf" for the rest.
std::string numberText(float number);
/// Likewise for doubles.
std::string numberText(double number);

/// A double in six digits, which hides what is left of a float that it came from.
std::string shortNumberText(double number);

/// A count with its noun: "1 level", "3 levels".
std::string countText(unsigned long long count, const std::string& noun);

/// A count of bytes for display: "812 B", "1.4 KiB", up to "TiB".
std::string byteText(unsigned long long bytes);

} // namespace MoxTool
