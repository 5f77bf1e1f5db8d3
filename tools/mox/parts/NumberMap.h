#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// Where the numbers of a file get to in the stream "Heavy Data" of a new one. Positions count bytes before
/// compression.
class NumberMap {
public:
    /// Maps a run of bytes. Runs are added in ascending order of their beginnings.
    void add(std::uint64_t from, std::uint64_t size, std::uint64_t to);

    /// The new position; nothing if the byte there does not get into the new file.
    std::optional<std::uint64_t> find(std::uint64_t position) const;

    /// Whether all of these bytes get into the new file as one run.
    bool contains(std::uint64_t position, std::uint64_t size) const;

private:
    struct Run {
        std::uint64_t from;
        std::uint64_t size;
        std::uint64_t to;
    };

    const Run* runAt(std::uint64_t position) const;

    std::vector<Run> runs_;
};

} // namespace MoxTool
