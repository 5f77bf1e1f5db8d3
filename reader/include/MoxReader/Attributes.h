#pragma once

#include "MoxReader/StreamReader.h"

#include <map>
#include <string>
#include <variant>

namespace MoxReader {

/// The value of an attribute. The index of the alternative is the kind number in the file. Integers are
/// unsigned here, so a writer's -1 is read as 4294967295.
using AttributeValue = std::variant<std::uint32_t, float, std::string, double>;

/// Attributes by key, in ascending byte order of the keys.
using Attributes = std::map<std::string, AttributeValue>;

/// Reads one attribute record: six lists.
/// @throws Error  BadAttributes, BadCount, and those of StreamReader.
Attributes readAttributes(StreamReader& stream);

} // namespace MoxReader
