#include "common/process.h"

#include <dlfcn.h>
#include <sys/resource.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

namespace Workloads {

namespace {

double seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

rusage resources() {
    rusage result{};
    getrusage(RUSAGE_SELF, &result);
    return result;
}

} // namespace

Usage usageOfProcess() {
    using SecondsInCompress = double (*)();
    static const auto secondsInCompress =
        reinterpret_cast<SecondsInCompress>(dlsym(RTLD_DEFAULT, "moxbench_seconds_in_compress2"));
    const rusage now = resources();
    Usage usage{.wall = seconds(CLOCK_MONOTONIC),
                .cpu = seconds(CLOCK_PROCESS_CPUTIME_ID),
                .user = seconds(now.ru_utime),
                .system = seconds(now.ru_stime),
                .compress = std::nullopt};
    if (secondsInCompress != nullptr) {
        usage.compress = secondsInCompress();
    }
    return usage;
}

// The figure of getrusage() can be that of the process which started this one.
std::uint64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (std::uint64_t size = 0; word == "VmHWM:" && status >> size) {
            return size;
        }
    }
    return static_cast<std::uint64_t>(resources().ru_maxrss);
}

void setVariable(const char* const name, const char* const value) {
    setenv(name, value, 1);
}

} // namespace Workloads
