#include "Support/EnvironmentGuard.h"

#include <cstdlib>
#include <utility>

namespace Support {

EnvironmentGuard::EnvironmentGuard(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
    if (const char* const present = std::getenv(name_.c_str()); present != nullptr) {
        former_ = present;
    }
    set(value);
}

EnvironmentGuard::~EnvironmentGuard() {
    set(former_);
}

// The only platform-dependent code of this class.
void EnvironmentGuard::set(const std::optional<std::string>& value) {
#if defined(_WIN32)
    _putenv_s(name_.c_str(), value.value_or("").c_str());
#else
    if (value) {
        setenv(name_.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name_.c_str());
    }
#endif
}

} // namespace Support
