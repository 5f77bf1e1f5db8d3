// Preloaded into mox, lets a call that writes to a file fail, whoever writes: mox, the libraries, or those of other
// formats. See preloaded.h; MOX_TEST_ERROR is the number of the error, such as that of a full disk. Only files that
// could be on a disk count, so neither messages nor what processes send to each other.

#include "preloaded.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace {

// The next one of the same type, which does it.
template <typename FunctionT>
FunctionT* actual(FunctionT*, const char* name) {
    return reinterpret_cast<FunctionT*>(dlsym(RTLD_NEXT, name));
}

bool isWrittenFile(int file) {
    struct stat status {};
    const int flags = fcntl(file, F_GETFL);
    return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY && fstat(file, &status) == 0 &&
           S_ISREG(status.st_mode);
}

bool isToFail(int file) {
    const int before = errno;
    const bool fails = isWrittenFile(file) && Preloaded::isToFail();
    errno = before;
    return fails;
}

bool isToFail(FILE* stream) {
    return stream != nullptr && isToFail(fileno(stream));
}

template <typename ResultT>
ResultT failure(ResultT result) {
    const char* const error = std::getenv("MOX_TEST_ERROR");
    errno = error != nullptr ? std::atoi(error) : EIO;
    return result;
}

// A stream remembers that a write has failed.
template <typename ResultT>
ResultT failure(FILE* stream, ResultT result) {
    constexpr int ErrorSeen = 0x20; // in glibc
    stream->_flags |= ErrorSeen;
    return failure(result);
}

} // namespace

extern "C" {

ssize_t write(int file, const void* bytes, std::size_t count) {
    static auto* const next = actual(write, "write");
    return isToFail(file) ? failure(ssize_t{-1}) : next(file, bytes, count);
}

ssize_t writev(int file, const iovec* pieces, int count) {
    static auto* const next = actual(writev, "writev");
    return isToFail(file) ? failure(ssize_t{-1}) : next(file, pieces, count);
}

ssize_t pwrite(int file, const void* bytes, std::size_t count, off_t offset) {
    static auto* const next = actual(pwrite, "pwrite");
    return isToFail(file) ? failure(ssize_t{-1}) : next(file, bytes, count, offset);
}

ssize_t pwrite64(int file, const void* bytes, std::size_t count, off64_t offset) {
    static auto* const next = actual(pwrite64, "pwrite64");
    return isToFail(file) ? failure(ssize_t{-1}) : next(file, bytes, count, offset);
}

ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset, std::size_t count,
                        unsigned flags) {
    static auto* const next = actual(copy_file_range, "copy_file_range");
    return isToFail(to) ? failure(ssize_t{-1}) : next(from, fromOffset, to, toOffset, count, flags);
}

int ftruncate(int file, off_t length) noexcept {
    static auto* const next = actual(ftruncate, "ftruncate");
    return isToFail(file) ? failure(-1) : next(file, length);
}

int ftruncate64(int file, off64_t length) noexcept {
    static auto* const next = actual(ftruncate64, "ftruncate64");
    return isToFail(file) ? failure(-1) : next(file, length);
}

int fsync(int file) {
    static auto* const next = actual(fsync, "fsync");
    return isToFail(file) ? failure(-1) : next(file);
}

// It is closed all the same, as by the system.
int close(int file) {
    static auto* const next = actual(close, "close");
    const bool fails = isToFail(file);
    const int result = next(file);
    return fails ? failure(-1) : result;
}

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, FILE* stream) {
    static auto* const next = actual(fwrite, "fwrite");
    return isToFail(stream) ? failure(stream, std::size_t{0}) : next(bytes, size, count, stream);
}

int fputs(const char* text, FILE* stream) {
    static auto* const next = actual(fputs, "fputs");
    return isToFail(stream) ? failure(stream, EOF) : next(text, stream);
}

int fputc(int letter, FILE* stream) {
    static auto* const next = actual(fputc, "fputc");
    return isToFail(stream) ? failure(stream, EOF) : next(letter, stream);
}

int putc(int letter, FILE* stream) {
    static auto* const next = actual(putc, "putc");
    return isToFail(stream) ? failure(stream, EOF) : next(letter, stream);
}

int fflush(FILE* stream) {
    static auto* const next = actual(fflush, "fflush");
    return isToFail(stream) ? failure(stream, EOF) : next(stream);
}

int fclose(FILE* stream) {
    static auto* const next = actual(fclose, "fclose");
    const bool fails = isToFail(stream);
    const int result = next(stream);
    return fails ? failure(EOF) : result;
}

} // extern "C"
