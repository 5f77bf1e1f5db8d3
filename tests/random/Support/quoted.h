#pragma once

#include <string>

namespace RandomUse {

/// A text for a developer to read: in quotes, without control characters, and cut if it is long.
std::string quoted(const std::string& text);

} // namespace RandomUse
