#pragma once

#include "Support/Bytes.h"

#include <cstdio>

namespace Support {

/// A stream that can be written, up to some ten thousand bytes, but not positioned.
class Pipe {
public:
    /// Whether this system has pipes that refuse to be positioned; elsewhere a test has to be skipped.
    static bool isAvailable();

    Pipe();
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe();

    std::FILE* stream() const { return writeEnd_; }

    /// Closes the stream.
    /// @return everything that was written.
    ByteVector drain();

private:
    void closeWriteEnd();

    int readEnd_ = -1;
    std::FILE* writeEnd_ = nullptr;
};

} // namespace Support
