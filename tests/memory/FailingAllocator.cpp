#include "memory/FailingAllocator.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include <zlib.h>

namespace Memory {

namespace {

// Only one thread allocates.
bool isArmed = false;
bool failed = false;
unsigned int passed = 0;
unsigned int failing = 0;
FailingAllocator::Mode failingMode = FailingAllocator::Mode::Once;
long long liveAllocations = 0;
unsigned int compressionCount = 0;

} // namespace

void FailingAllocator::arm(unsigned int number, Mode mode) {
    passed = 0;
    failing = number;
    failingMode = mode;
    failed = false;
    isArmed = true;
}

void FailingAllocator::disarm() {
    isArmed = false;
}

void FailingAllocator::resume() {
    isArmed = true;
}

bool FailingAllocator::hasFailed() {
    return failed;
}

long long FailingAllocator::live() {
    return liveAllocations;
}

unsigned int FailingAllocator::compressions() {
    return compressionCount;
}

bool FailingAllocator::isToFail() {
    if (!isArmed) {
        return false;
    }
    ++passed;
    const bool fails = failingMode == Mode::Once ? passed == failing : passed >= failing;
    failed = failed || fails;
    return fails;
}

void FailingAllocator::countAllocation(const void* const memory) {
    liveAllocations += memory != nullptr ? 1 : 0;
}

void FailingAllocator::countRelease(const void* const memory) {
    liveAllocations -= memory != nullptr ? 1 : 0;
}

void FailingAllocator::countCompression() {
    ++compressionCount;
}

} // namespace Memory

using Memory::FailingAllocator;

// The linker sends all calls of the allocating functions to the __wrap_ ones, and calls of __real_ to the
// originals.
extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);

void* __wrap_malloc(std::size_t size) {
    void* const memory = FailingAllocator::isToFail() ? nullptr : __real_malloc(size);
    FailingAllocator::countAllocation(memory);
    return memory;
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    void* const memory = FailingAllocator::isToFail() ? nullptr : __real_calloc(count, size);
    FailingAllocator::countAllocation(memory);
    return memory;
}

void* __wrap_realloc(void* memory, std::size_t size) {
    if (FailingAllocator::isToFail()) {
        return nullptr;
    }
    void* const grown = __real_realloc(memory, size);
    if (grown != nullptr) {
        FailingAllocator::countRelease(memory);
        FailingAllocator::countAllocation(grown);
    }
    return grown;
}

void __wrap_free(void* memory) {
    FailingAllocator::countRelease(memory);
    __real_free(memory);
}

int __real_compress2(Bytef* compressed, uLongf* compressedLength, const Bytef* content, uLong length,
                     int level);

int __wrap_compress2(Bytef* compressed, uLongf* compressedLength, const Bytef* content, uLong length,
                     int level) {
    FailingAllocator::countCompression();
    return __real_compress2(compressed, compressedLength, content, length, level);
}

// zlib's own allocations pass by the functions above; it reports that one has failed like this.
int __real_inflateInit_(z_streamp stream, const char* version, int size);
int __real_inflate(z_streamp stream, int flush);

int __wrap_inflateInit_(z_streamp stream, const char* version, int size) {
    return FailingAllocator::isToFail() ? Z_MEM_ERROR : __real_inflateInit_(stream, version, size);
}

int __wrap_inflate(z_streamp stream, int flush) {
    return FailingAllocator::isToFail() ? Z_MEM_ERROR : __real_inflate(stream, flush);
}

} // extern "C"

void* operator new(std::size_t size) {
    void* const memory = FailingAllocator::isToFail() ? nullptr : __real_malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    FailingAllocator::countAllocation(memory);
    return memory;
}

void operator delete(void* memory) noexcept {
    __wrap_free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    __wrap_free(memory);
}
