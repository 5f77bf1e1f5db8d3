#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define API_LEAKS_ARE_LOOKED_FOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define API_LEAKS_ARE_LOOKED_FOR
#endif
#endif

#if defined(API_LEAKS_ARE_LOOKED_FOR)
#include <sanitizer/lsan_interface.h>
#endif

namespace Api {

/// What is allocated in its lifetime may be lost without a report of the leak sanitizer.
class MeantLeak {
public:
    MeantLeak() {}
    MeantLeak(const MeantLeak&) = delete;
    MeantLeak& operator=(const MeantLeak&) = delete;
    ~MeantLeak() {}

#if defined(API_LEAKS_ARE_LOOKED_FOR)
private:
    __lsan::ScopedDisabler disabler;
#endif
};

} // namespace Api
