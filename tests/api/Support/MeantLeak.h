#pragma once

#include "Support/AddressSanitizer.h"

namespace Api {

/// What is allocated in its lifetime may be lost without a report of the leak sanitizer.
class MeantLeak {
public:
    MeantLeak() {}
    MeantLeak(const MeantLeak&) = delete;
    MeantLeak& operator=(const MeantLeak&) = delete;
    ~MeantLeak() {}

#if SUPPORT_ADDRESS_SANITIZER
private:
    __lsan::ScopedDisabler disabler;
#endif
};

} // namespace Api
