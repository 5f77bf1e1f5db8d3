// The date of the models that this program saves, so that the files it makes on any two machines are equal to the
// last byte. The program's own function takes precedence over that of the C library.

#include <ctime>

namespace {
constexpr std::time_t Fixed = 1'700'000'000; // Tue Nov 14 22:13:20 2023 UTC
} // namespace

#if defined(_WIN32)

namespace {
__time64_t fixedTime(__time64_t* result) {
    if (result != nullptr) {
        *result = Fixed;
    }
    return Fixed;
}
} // namespace

// Where a call of the C library's function takes its address from.
extern "C" __time64_t (*const __imp__time64)(__time64_t*) = fixedTime;

#else

extern "C" std::time_t time(std::time_t* timer) noexcept {
    if (timer != nullptr) {
        *timer = Fixed;
    }
    return Fixed;
}

#endif
