#include "Qel/Support/Pipe.h"

#include <array>
#include <utility>

// The only platform-dependent code of this class.
#if defined(_WIN32)

namespace Support {

bool Pipe::isAvailable() {
    return false;
}

Pipe::Pipe() = default;

Pipe::~Pipe() = default;

ByteVector Pipe::drain() {
    return {};
}

} // namespace Support

#else

#include <unistd.h>

#include <stdexcept>

namespace Support {

bool Pipe::isAvailable() {
    return true;
}

Pipe::Pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe can be made");
    }
    readEnd_ = ends[0];
    writeEnd_ = fdopen(ends[1], "wb");
}

Pipe::~Pipe() {
    closeWriteEnd();
    close(readEnd_);
}

void Pipe::closeWriteEnd() {
    if (writeEnd_ != nullptr) {
        std::fclose(std::exchange(writeEnd_, nullptr));
    }
}

ByteVector Pipe::drain() {
    closeWriteEnd();
    ByteVector bytes;
    std::array<std::uint8_t, 4096> part{};
    for (ssize_t count = 0; (count = read(readEnd_, part.data(), part.size())) > 0;) {
        bytes.insert(bytes.end(), part.begin(), part.begin() + count);
    }
    return bytes;
}

} // namespace Support

#endif
