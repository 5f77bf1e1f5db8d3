#pragma once

#include <MoxReader/Attributes.h>

#include <optional>
#include <string>

namespace MoxTool {

/// A text among attributes; empty if there is no text of that key.
std::string textAttribute(const MoxReader::Attributes& attributes, const std::string& key);

/// A number among attributes, whatever its kind. A text counts if it is a number from its first letter to its
/// last; an integer is taken with its sign.
std::optional<double> numberAttribute(const MoxReader::Attributes& attributes, const std::string& key);

} // namespace MoxTool
