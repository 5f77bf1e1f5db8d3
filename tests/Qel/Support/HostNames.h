#pragma once

#include <optional>
#include <string>

namespace Support {

/// The host's name in full, as the kernel knows it; nothing where that can't be asked.
std::optional<std::string> hostName();

/// The name in full of the user who runs the process, as the program `id` tells it, empty if the user has
/// none; nothing where there is no such program.
std::optional<std::string> nameOfUser();

} // namespace Support
