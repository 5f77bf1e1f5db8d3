#include "preloaded.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <new>

namespace {

using Main = int (*)(int, char**, char**);
using Counter = std::atomic<unsigned long>;

Main programMain = nullptr;
Counter* passed = nullptr; // nothing is counted before it is there
unsigned long failing = 0;
bool fromThenOn = false;

void readPlan() {
    const char* const plan = std::getenv("MOX_TEST_FAILING_CALL");
    if (plan != nullptr) {
        failing = std::strtoul(plan, nullptr, 10);
        fromThenOn = std::strchr(plan, '+') != nullptr;
    }
}

// A process that is forked goes on with the same one.
void startCounting() {
    void* const room =
        mmap(nullptr, sizeof(Counter), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) {
        std::abort();
    }
    passed = new (room) Counter(0);
}

void writeCount() {
    const unsigned long count = passed->load();
    passed = nullptr;
    const char* const path = std::getenv("MOX_TEST_CALLS");
    if (path == nullptr) {
        return;
    }
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%lu", count);
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || write(file, text, static_cast<std::size_t>(length)) != length) {
        std::abort();
    }
    close(file);
}

int countingMain(int count, char** words, char** environment) {
    readPlan();
    (void)std::atexit(writeCount);
    startCounting();
    return programMain(count, words, environment);
}

} // namespace

namespace Preloaded {

bool isToFail() {
    if (passed == nullptr) {
        return false;
    }
    const unsigned long number = ++*passed;
    return failing != 0 && (fromThenOn ? number >= failing : number == failing);
}

} // namespace Preloaded

extern "C" int __libc_start_main(Main main, int count, char** words, void (*init)(), void (*fini)(),
                                 void (*unload)(), void* stackEnd) {
    using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
    programMain = main;
    auto* const start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return start(countingMain, count, words, init, fini, unload, stackEnd);
}
