#include "faults/FailingFiles.h"

#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>

namespace Faults {

namespace {

constexpr std::size_t Calls = 4;

std::optional<FailingFiles::Plan> armed;
std::array<unsigned int, Calls> passed{};
bool failed = false;

} // namespace

void FailingFiles::arm(const Plan& plan) {
    armed = plan;
    passed.fill(0);
    failed = false;
}

void FailingFiles::disarm() {
    armed.reset();
}

bool FailingFiles::hasFailed() {
    return failed;
}

bool FailingFiles::isToFail(Call call) {
    if (!armed || armed->call != call) {
        return false;
    }
    const unsigned int number = ++passed[static_cast<std::size_t>(call)];
    const bool fails = armed->mode == Mode::Once ? number == armed->number : number >= armed->number;
    failed = failed || fails;
    return fails;
}

FailingFiles::Fault FailingFiles::fault() {
    return armed->fault;
}

} // namespace Faults

using Faults::FailingFiles;

namespace {

// A Sunday in 2020, so that files that are saved a second apart are equal.
constexpr std::time_t FixedTime = 1600000000;

void endIfPlanned() {
    if (FailingFiles::fault() == FailingFiles::Fault::Killed) {
        (void)std::raise(SIGKILL);
    }
}

} // namespace

// The linker sends the calls of the library to the __wrap_ functions, and calls of __real_ to the originals.
extern "C" {

std::FILE* __real_fopen(const char* path, const char* mode);
std::FILE* __real_fopen64(const char* path, const char* mode);
std::size_t __real_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* stream);
int __real_fseeko(std::FILE* stream, off_t offset, int origin);
int __real_fseeko64(std::FILE* stream, off_t offset, int origin);
int __real_fclose(std::FILE* stream);

std::time_t __wrap_time(std::time_t* result) {
    if (result != nullptr) {
        *result = FixedTime;
    }
    return FixedTime;
}

std::FILE* __wrap_fopen(const char* path, const char* mode) {
    if (FailingFiles::isToFail(FailingFiles::Call::Open)) {
        endIfPlanned();
        errno = EMFILE;
        return nullptr;
    }
    return __real_fopen(path, mode);
}

std::FILE* __wrap_fopen64(const char* path, const char* mode) {
    return __wrap_fopen(path, mode);
}

std::size_t __wrap_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* stream) {
    if (!FailingFiles::isToFail(FailingFiles::Call::Write)) {
        return __real_fwrite(data, size, count, stream);
    }
    std::size_t written = 0;
    if (FailingFiles::fault() != FailingFiles::Fault::Nothing) {
        written = __real_fwrite(data, 1, size * count / 2, stream);
    }
    endIfPlanned();
    errno = FailingFiles::fault() == FailingFiles::Fault::BrokenOff ? EINTR : ENOSPC;
    return written / size;
}

int __wrap_fseeko(std::FILE* stream, off_t offset, int origin) {
    if (FailingFiles::isToFail(FailingFiles::Call::Seek)) {
        endIfPlanned();
        errno = EIO;
        return -1;
    }
    return __real_fseeko(stream, offset, origin);
}

int __wrap_fseeko64(std::FILE* stream, off_t offset, int origin) {
    return __wrap_fseeko(stream, offset, origin);
}

// The stream is closed all the same, as a failing fclose() does it.
int __wrap_fclose(std::FILE* stream) {
    if (!FailingFiles::isToFail(FailingFiles::Call::Close)) {
        return __real_fclose(stream);
    }
    endIfPlanned();
    (void)__real_fclose(stream);
    errno = EIO;
    return EOF;
}

} // extern "C"
