#pragma once

#include "Support/EnvironmentGuard.h"

#include <string>

namespace Support {

/// Moves the process into a time zone, and back at the end.
class TimeZoneGuard {
public:
    /// @param zone In the form of the variable `TZ`: "FAR-13:45" is a zone called FAR, 13:45 hours east of
    ///             UTC.
    explicit TimeZoneGuard(const std::string& zone);
    TimeZoneGuard(const TimeZoneGuard&) = delete;
    TimeZoneGuard& operator=(const TimeZoneGuard&) = delete;
    ~TimeZoneGuard();

private:
    std::optional<EnvironmentGuard> variable_;
};

} // namespace Support
