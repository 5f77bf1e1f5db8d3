#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

/// The known word that was probably meant by a mistyped one: the one with the fewest letters to insert, drop,
/// replace or swap with the next, at most one for each three typed; or else the only one that begins as
/// typed.
std::optional<std::string> closestWord(std::string_view typed, const std::vector<std::string>& known);

/// A question for the end of a message, such as: ; did you mean --quick? Empty if no known word is close.
std::string didYouMean(std::string_view typed, const std::vector<std::string>& known);

} // namespace MoxTool
