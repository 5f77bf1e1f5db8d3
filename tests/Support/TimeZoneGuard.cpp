#include "Support/TimeZoneGuard.h"

#include <ctime>

namespace Support {

namespace {

// The only platform-dependent code of this class.
void takeZoneFromEnvironment() {
#if defined(_WIN32)
    _tzset();
#else
    tzset();
#endif
}

} // namespace

TimeZoneGuard::TimeZoneGuard(const std::string& zone) {
    variable_.emplace("TZ", zone);
    takeZoneFromEnvironment();
}

TimeZoneGuard::~TimeZoneGuard() {
    variable_.reset();
    takeZoneFromEnvironment();
}

} // namespace Support
