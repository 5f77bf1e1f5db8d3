// Preloaded into mox, lets an allocation of the program fail, whoever allocates: mox, the libraries, or the C library
// for itself. See preloaded.h.

#include "preloaded.h"

#include <cerrno>
#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using Preloaded::isToFail;

// A failed allocation has to set this.
void* orNoMemory(void* memory) {
    if (memory == nullptr) {
        errno = ENOMEM;
    }
    return memory;
}

} // namespace

extern "C" {

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
