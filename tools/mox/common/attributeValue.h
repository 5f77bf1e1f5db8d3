#pragma once

#include <MoxReader/Attributes.h>

#include <optional>
#include <string>

namespace MoxTool {

/// A text among attributes; empty if the key has no text.
std::string textAttribute(const MoxReader::Attributes& attributes, const std::string& key);

/// A number among attributes, whatever its kind. A text counts if all of it is a number; an integer is taken
/// as signed.
std::optional<double> numberAttribute(const MoxReader::Attributes& attributes, const std::string& key);

} // namespace MoxTool
