#pragma once

#include <optional>
#include <string>

namespace Support {

/// The host's full name, as the kernel knows it; nothing where that can't be determined.
std::optional<std::string> hostName();

/// The full name of the user who runs the process, as the program `id` prints it, empty if the user has none;
/// nothing where there is no such program.
std::optional<std::string> nameOfUser();

} // namespace Support
