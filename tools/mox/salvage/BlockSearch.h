#pragma once

#include "AttemptBudget.h"
#include "BlockInflater.h"

#include <MoxReader/Source.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// Searches bytes of which nothing is known for blocks, by the headers of their zlib streams. Writes nothing.
///
/// Each place is tried once, however often it is asked for; so the place from which to search must not fall
/// from call to call.
class BlockSearch {
public:
    /// @param budget Charged with attempts that fail. Once it is used up, nothing is found any more.
    BlockSearch(MoxReader::Source& source, BlockInflater& inflater, AttemptBudget& budget);

    /// The first place from a given one on at which a whole block begins.
    /// @throws MoxReader::Error ReadFailed.
    std::optional<std::uint64_t> findWhole(std::uint64_t from);

    /// If findWhole() has found none: the first place from a given one on at which a block begins that the
    /// end of the file cuts off. Beginnings too short to be told from chance do not count.
    std::optional<std::uint64_t> findCutOff(std::uint64_t from) const;

private:
    bool isWhole(std::uint64_t place);
    std::optional<std::uint64_t> findHeader(std::uint64_t from);
    bool isInWindow(std::uint64_t place) const;
    void moveWindow(std::uint64_t start);

    MoxReader::Source& source_;
    BlockInflater& inflater_;
    AttemptBudget& budget_;
    std::uint64_t untried_ = 0; ///< All places before this one have had their attempt or will not get one.
    std::optional<std::uint64_t> whole_;  ///< The last place found.
    std::optional<std::uint64_t> cutOff_; ///< The first one behind it.
    std::uint64_t windowStart_ = 0;
    std::vector<std::uint8_t> window_; ///< Bytes of the file from there on.
};

} // namespace MoxTool
