// Preloaded into a program, measures the CPU time that its threads spend inside zlib's compress2():
//
//     LD_PRELOAD=libmoxbench-compress.so PROGRAM ...
//
// At the end of the program prints a line on standard error; a program that looks up the function
// moxbench_seconds_in_compress2() can ask at any time.

#include <dlfcn.h>
#include <zlib.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace {

std::atomic<std::uint64_t> nanosecondsInside;
std::atomic<std::uint64_t> calls;
std::atomic<std::uint64_t> bytesIn;
std::atomic<std::uint64_t> bytesOut;

std::uint64_t nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

double inSeconds(std::uint64_t duration) {
    return 1e-9 * static_cast<double>(duration);
}

struct Report {
    ~Report() {
        const double process = inSeconds(nanoseconds(CLOCK_PROCESS_CPUTIME_ID));
        const double inside = inSeconds(nanosecondsInside);
        std::fprintf(stderr,
                     "compress2 calls=%llu in_bytes=%llu out_bytes=%llu inside_s=%.6f outside_s=%.6f "
                     "process_s=%.6f\n",
                     static_cast<unsigned long long>(calls), static_cast<unsigned long long>(bytesIn),
                     static_cast<unsigned long long>(bytesOut), inside, process - inside, process);
    }
};
const Report report;

} // namespace

extern "C" __attribute__((visibility("default"))) double moxbench_seconds_in_compress2() {
    return inSeconds(nanosecondsInside);
}

extern "C" __attribute__((visibility("default"))) int
compress2(Bytef* dest, uLongf* destLen, const Bytef* source, uLong sourceLen, int level) {
    static const auto original = reinterpret_cast<decltype(&compress2)>(dlsym(RTLD_NEXT, "compress2"));
    const std::uint64_t begin = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
    const int result = original(dest, destLen, source, sourceLen, level);
    nanosecondsInside += nanoseconds(CLOCK_THREAD_CPUTIME_ID) - begin;
    ++calls;
    bytesIn += sourceLen;
    bytesOut += result == Z_OK ? *destLen : 0;
    return result;
}
