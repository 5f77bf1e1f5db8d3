#pragma once

#include <cstdlib>

namespace Program {

/// At how many places each command of mox meets each fault; few, unless MOX_FAULTS says otherwise.
inline unsigned long places() {
    constexpr unsigned long Few = 3;
    const char* const text = std::getenv("MOX_FAULTS");
    return text != nullptr ? std::strtoul(text, nullptr, 10) : Few;
}

} // namespace Program
