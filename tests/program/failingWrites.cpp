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

// Parameters have the names of the declarations.
extern "C" {

ssize_t write(int fd, const void* buf, std::size_t n) {
    static auto* const next = actual(write, "write");
    return isToFail(fd) ? failure(ssize_t{-1}) : next(fd, buf, n);
}

ssize_t writev(int fd, const iovec* vec, int count) {
    static auto* const next = actual(writev, "writev");
    return isToFail(fd) ? failure(ssize_t{-1}) : next(fd, vec, count);
}

ssize_t pwrite(int fd, const void* buf, std::size_t n, off_t offset) {
    static auto* const next = actual(pwrite, "pwrite");
    return isToFail(fd) ? failure(ssize_t{-1}) : next(fd, buf, n, offset);
}

ssize_t pwrite64(int fd, const void* buf, std::size_t n, off64_t offset) {
    static auto* const next = actual(pwrite64, "pwrite64");
    return isToFail(fd) ? failure(ssize_t{-1}) : next(fd, buf, n, offset);
}

ssize_t copy_file_range(int infd, off64_t* pinoff, int outfd, off64_t* poutoff, std::size_t length,
                        unsigned flags) {
    static auto* const next = actual(copy_file_range, "copy_file_range");
    return isToFail(outfd) ? failure(ssize_t{-1}) : next(infd, pinoff, outfd, poutoff, length, flags);
}

int ftruncate(int fd, off_t length) noexcept {
    static auto* const next = actual(ftruncate, "ftruncate");
    return isToFail(fd) ? failure(-1) : next(fd, length);
}

int ftruncate64(int fd, off64_t length) noexcept {
    static auto* const next = actual(ftruncate64, "ftruncate64");
    return isToFail(fd) ? failure(-1) : next(fd, length);
}

int fsync(int fd) {
    static auto* const next = actual(fsync, "fsync");
    return isToFail(fd) ? failure(-1) : next(fd);
}

// It is closed all the same, as by the system.
int close(int fd) {
    static auto* const next = actual(close, "close");
    const bool fails = isToFail(fd);
    const int result = next(fd);
    return fails ? failure(-1) : result;
}

std::size_t fwrite(const void* ptr, std::size_t size, std::size_t n, FILE* s) {
    static auto* const next = actual(fwrite, "fwrite");
    return isToFail(s) ? failure(s, std::size_t{0}) : next(ptr, size, n, s);
}

int fputs(const char* s, FILE* stream) {
    static auto* const next = actual(fputs, "fputs");
    return isToFail(stream) ? failure(stream, EOF) : next(s, stream);
}

int fputc(int c, FILE* stream) {
    static auto* const next = actual(fputc, "fputc");
    return isToFail(stream) ? failure(stream, EOF) : next(c, stream);
}

int putc(int c, FILE* stream) {
    static auto* const next = actual(putc, "putc");
    return isToFail(stream) ? failure(stream, EOF) : next(c, stream);
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
