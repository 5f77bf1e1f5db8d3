#pragma once

#include <optional>
#include <string>

namespace Support {

/// Makes the system return other names of the host and the user during its lifetime.
class FakeNames {
public:
    /// Whether this system's answers can be replaced; elsewhere a test has to be skipped.
    static bool isAvailable();

    /// @param name The name of both; nothing for a system that doesn't know them.
    explicit FakeNames(const std::optional<std::string>& name);
    FakeNames(const FakeNames&) = delete;
    FakeNames& operator=(const FakeNames&) = delete;
    ~FakeNames();
};

} // namespace Support
