// Preloaded into mox, lets one allocation of the program fail, or one and all that follow it; whoever allocates: mox, the
// libraries, or the C library for itself. Counting starts with main(), since a program that can't even be loaded is
// nothing that a program could handle.
//
// MOX_TEST_FAILING_ALLOCATION is the number of the allocation, from 1 on; with a "+" after it, all that follow fail too.
// MOX_TEST_ALLOCATIONS is a file that gets the count of all allocations when the program ends.

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using Main = int (*)(int, char**, char**);

Main programMain = nullptr;
std::atomic<bool> isCounting = false;
std::atomic<unsigned long> passed = 0;
unsigned long failing = 0;
bool fromThenOn = false;

bool isToFail() {
    if (!isCounting) {
        return false;
    }
    const unsigned long number = ++passed;
    return failing != 0 && (fromThenOn ? number >= failing : number == failing);
}

// A failed allocation has to set this.
void* orNoMemory(void* memory) {
    if (memory == nullptr) {
        errno = ENOMEM;
    }
    return memory;
}

void readPlan() {
    const char* const plan = std::getenv("MOX_TEST_FAILING_ALLOCATION");
    if (plan != nullptr) {
        failing = std::strtoul(plan, nullptr, 10);
        fromThenOn = std::strchr(plan, '+') != nullptr;
    }
}

void writeCount() {
    isCounting = false;
    const char* const path = std::getenv("MOX_TEST_ALLOCATIONS");
    if (path == nullptr) {
        return;
    }
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%lu", passed.load());
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || write(file, text, static_cast<std::size_t>(length)) != length) {
        std::abort();
    }
    close(file);
}

int countingMain(int count, char** words, char** environment) {
    readPlan();
    (void)std::atexit(writeCount);
    isCounting = true;
    return programMain(count, words, environment);
}

} // namespace

extern "C" {

int __libc_start_main(Main main, int count, char** words, void (*init)(), void (*fini)(), void (*unload)(),
                      void* stackEnd) {
    using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
    programMain = main;
    auto* const start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return start(countingMain, count, words, init, fini, unload, stackEnd);
}

void* malloc(std::size_t size) {
    return orNoMemory(isToFail() ? nullptr : __libc_malloc(size));
}

void* calloc(std::size_t nmemb, std::size_t size) {
    return orNoMemory(isToFail() ? nullptr : __libc_calloc(nmemb, size));
}

void* realloc(void* ptr, std::size_t size) {
    return orNoMemory(isToFail() ? nullptr : __libc_realloc(ptr, size));
}

void* memalign(std::size_t alignment, std::size_t size) {
    return orNoMemory(isToFail() ? nullptr : __libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** memptr, std::size_t alignment, std::size_t size) {
    void* const room = memalign(alignment, size);
    if (room == nullptr) {
        return ENOMEM;
    }
    *memptr = room;
    return 0;
}

} // extern "C"
