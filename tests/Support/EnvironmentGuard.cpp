#include "Support/EnvironmentGuard.h"

#include <cstdlib>
#include <utility>

namespace Support {

EnvironmentGuard::EnvironmentGuard(std::string variableName, const std::optional<std::string>& variableValue)
    : name(std::move(variableName)) {
    if (const char* const present = std::getenv(name.c_str()); present != nullptr) {
        former = present;
    }
    set(variableValue);
}

EnvironmentGuard::~EnvironmentGuard() {
    set(former);
}

// The only platform-dependent code of this class.
void EnvironmentGuard::set(const std::optional<std::string>& variableValue) {
#if defined(_WIN32)
    _putenv_s(name.c_str(), variableValue.value_or("").c_str());
#else
    if (variableValue) {
        setenv(name.c_str(), variableValue->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
#endif
}

} // namespace Support
