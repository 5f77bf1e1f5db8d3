#pragma once

#include <cstdint>
#include <span>

namespace MoxReader {

/// Bytes that can be read at any offset: a file (FileSource), memory (MemorySource), or the caller's own
/// class. A source has an internal position, so only one thread at a time may use it.
class Source {
public:
    Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;

    /// Total number of bytes, constant over the life of the source.
    virtual std::uint64_t size() const = 0;

    /// Fills target with the bytes at offset.
    /// @throws Error  Truncated if the source ends too early; ReadFailed.
    void read(std::uint64_t offset, std::span<std::uint8_t> target);

protected:
    /// Does the reading. The range lies inside the source.
    virtual void readInside(std::uint64_t offset, std::span<std::uint8_t> target) = 0;
};

} // namespace MoxReader
