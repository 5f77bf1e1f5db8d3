#pragma once

#include <cstdint>
#include <map>

namespace MoxReader {

/// A set of bytes of a file, kept as ranges.
class ByteRanges {
public:
    void add(std::uint64_t begin, std::uint64_t end);
    /// Whether any byte from begin to before end is in the set.
    bool touch(std::uint64_t begin, std::uint64_t end) const;

private:
    std::map<std::uint64_t, std::uint64_t> ends_; ///< Keyed by begin. Ranges neither overlap nor touch.
};

} // namespace MoxReader
