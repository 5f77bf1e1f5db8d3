#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace MoxTool {

using Json = nlohmann::ordered_json; ///< Keeps the order in which its members were added.

/// A text; {"bytes": "<two hexadecimal digits for each>"} if it is not UTF-8, since JSON can't hold it then.
Json jsonText(const std::string& text);

/// A JSON number with the text of numberText() ("0.1", "1.0"); the text "nan", "inf" or "-inf" if the number
/// is not finite, since JSON has no such numbers.
Json jsonNumber(float number);
/// Likewise for doubles.
Json jsonNumber(double number);

} // namespace MoxTool
