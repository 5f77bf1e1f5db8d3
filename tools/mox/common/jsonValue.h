#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace MoxTool {

using Json = nlohmann::ordered_json; ///< Keeps the order in which its members were given.

/// A text; {"bytes": "<two hexadecimal digits for each>"} if it is not UTF-8, which JSON can't hold.
Json jsonText(const std::string& text);

/// A number that prints as numberText() does, as a number of JSON ("0.1", "1.0"); a text "nan", "inf" or
/// "-inf" if it is not finite, for which JSON has no number.
Json jsonNumber(float number);
/// Likewise for doubles.
Json jsonNumber(double number);

} // namespace MoxTool
