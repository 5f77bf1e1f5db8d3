#pragma once

/// Whether the tests run under the address sanitizer, as one macro for all compilers.
#if defined(__SANITIZE_ADDRESS__)
#define SUPPORT_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SUPPORT_ADDRESS_SANITIZER 1
#endif
#endif
#if !defined(SUPPORT_ADDRESS_SANITIZER)
#define SUPPORT_ADDRESS_SANITIZER 0
#endif

#if SUPPORT_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#endif
