#pragma once

#include <MoxReader/RawIndex.h>
#include <MoxReader/Source.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// The places at which the index, as far as it can be read, has compressed blocks. It may be wrong.
class KnownPlaces {
public:
    KnownPlaces(MoxReader::Source& source, const MoxReader::RawIndex& index);

    /// The first of them from a given place on at which a block can begin.
    /// @param from Must not fall from call to call.
    /// @throws MoxReader::Error ReadFailed.
    std::optional<std::uint64_t> find(std::uint64_t from);

private:
    MoxReader::Source& source_;
    std::vector<std::uint64_t> places_; ///< Ascending.
    std::size_t next_ = 0;              ///< The first that has not been passed.
};

} // namespace MoxTool
