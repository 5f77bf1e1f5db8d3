#pragma once

#include "Support/AddressSanitizer.h"

namespace Api {

/// Memory allocated in its lifetime may leak without a report of the leak sanitizer.
class MeantLeak {
public:
    MeantLeak() {}
    MeantLeak(const MeantLeak&) = delete;
    MeantLeak& operator=(const MeantLeak&) = delete;
    ~MeantLeak() {}

#if SUPPORT_ADDRESS_SANITIZER
private:
    __lsan::ScopedDisabler disabler_;
#endif
};

} // namespace Api
