#pragma once

#include "AttemptBudget.h"
#include "BlockInflater.h"

#include <MoxReader/Source.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// Searches unknown bytes for blocks, by the headers of their zlib streams. Writes nothing.
///
/// Each place is tried only once, however often it is asked for, so the place from which to search must not
/// decrease from call to call.
class BlockSearch {
public:
    /// @param budget Charged with attempts that fail. Once it is used up, nothing more is found.
    BlockSearch(MoxReader::Source& source, BlockInflater& inflater, AttemptBudget& budget);

    /// The first place at or after a given one at which a whole block begins.
    /// @throws MoxReader::Error ReadFailed.
    std::optional<std::uint64_t> findWhole(std::uint64_t from);

    /// If findWhole() has found none: the first place at or after a given one at which a block begins that
    /// the end of the file cuts off. Beginnings too short to be distinguished from random bytes do not count.
    std::optional<std::uint64_t> findCutOff(std::uint64_t from) const;

private:
    bool isWhole(std::uint64_t place);
    std::optional<std::uint64_t> findHeader(std::uint64_t from);
    bool isInWindow(std::uint64_t place) const;
    void moveWindow(std::uint64_t start);

    MoxReader::Source& source_;
    BlockInflater& inflater_;
    AttemptBudget& budget_;
    std::uint64_t untried_ = 0;           ///< All places before this one have been tried or will not be.
    std::optional<std::uint64_t> whole_;  ///< The last place found.
    std::optional<std::uint64_t> cutOff_; ///< The first one after it.
    std::uint64_t windowStart_ = 0;
    std::vector<std::uint8_t> window_; ///< Bytes of the file from there on.
};

} // namespace MoxTool
