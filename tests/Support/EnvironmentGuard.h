#pragma once

#include <optional>
#include <string>

namespace Support {

/// The variable with the size at which blocks go to disk, in bytes.
inline constexpr const char* BlockSizeVariable = "MOXWRITER_DEFAULT_BLOCK_SIZE";

/// Sets or removes an environment variable, and restores it at the end.
class EnvironmentGuard {
public:
    /// @param value Nothing to remove the variable.
    explicit EnvironmentGuard(std::string name, const std::optional<std::string>& value = {});
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;
    ~EnvironmentGuard();

    /// Changes the variable again; nothing removes it.
    void set(const std::optional<std::string>& value);

private:
    std::string name_;
    std::optional<std::string> former_;
};

} // namespace Support
