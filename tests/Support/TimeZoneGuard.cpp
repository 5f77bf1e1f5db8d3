#include "Support/TimeZoneGuard.h"

#include <ctime>

namespace Support {

namespace {

// The one place where systems differ.
void takeZoneFromEnvironment() {
#if defined(_WIN32)
    _tzset();
#else
    tzset();
#endif
}

} // namespace

TimeZoneGuard::TimeZoneGuard(const std::string& zone) {
    variable.emplace("TZ", zone);
    takeZoneFromEnvironment();
}

TimeZoneGuard::~TimeZoneGuard() {
    variable.reset();
    takeZoneFromEnvironment();
}

} // namespace Support
