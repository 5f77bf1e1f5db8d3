#include "Qel/Support/HostNames.h"

// The only platform-dependent code of these functions.
#if defined(_WIN32)

namespace Support {

std::optional<std::string> hostName() {
    return std::nullopt;
}

std::optional<std::string> nameOfUser() {
    return std::nullopt;
}

} // namespace Support

#else

#include <sys/utsname.h>

#include <array>
#include <cstdio>

namespace Support {

namespace {

std::optional<std::string> outputOf(const char* command) {
    std::FILE* const pipe = popen(command, "r");
    if (pipe == nullptr) {
        return std::nullopt;
    }
    std::string output;
    std::array<char, 256> part{};
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe) != nullptr) {
        output += part.data();
    }
    if (pclose(pipe) != 0 || !output.ends_with('\n')) {
        return std::nullopt;
    }
    output.pop_back();
    return output;
}

} // namespace

std::optional<std::string> hostName() {
    utsname names{};
    return uname(&names) == 0 ? std::optional<std::string>(names.nodename) : std::nullopt;
}

// The program fails for a user without a name.
std::optional<std::string> nameOfUser() {
    const std::optional<std::string> name = outputOf("id -un 2>/dev/null");
    if (name) {
        return name;
    }
    return outputOf("id -u 2>/dev/null") ? std::optional<std::string>("") : std::nullopt;
}

} // namespace Support

#endif
