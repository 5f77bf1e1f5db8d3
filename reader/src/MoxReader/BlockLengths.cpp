#include "MoxReader/BlockLengths.h"

#include "MoxReader/BlockContent.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace MoxReader {

namespace {

constexpr int MostLimits = 100; ///< How many limits are tried.

/// An array in the stream.
struct Range {
    std::uint64_t position;
    std::uint64_t size;
};

std::vector<Range> collectArrays(const std::vector<Node>& nodes) {
    std::vector<Range> arrays;
    for (const auto& node : nodes) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            if (!dataset.isLink && dataset.sizeInBytes > 0) {
                arrays.push_back({dataset.position, dataset.sizeInBytes});
            }
        }
    }
    std::ranges::sort(arrays, {}, &Range::position);
    return arrays;
}

bool hasLostLength(const BlockRecord& block) {
    return block.isCompressed() && (block.length == 0 || (block.isOverwritten && !block.contentLength));
}

bool isBeyondFile(const BlockRecord& block, std::uint64_t fileSize) {
    return block.length > 0 && block.end() > fileSize;
}

bool hasWrongLength(const BlockRecord& block, std::uint64_t fileSize) {
    const auto damage = findLengthDamage(block, fileSize);
    return damage && damage != ErrorCode::BlockOverwritten;
}

using Lengths = std::vector<std::optional<std::uint64_t>>;
using Starts = std::vector<std::uint64_t>;

/// Divides arrays among blocks as a writer with a given limit does: a block that has reached it is full.
class Division {
public:
    Division(const std::vector<Range>& arrays, const Lengths& known) : arrays_(arrays), known_(known) {}

    /// @return whether the known lengths allow this limit.
    bool tryLimit(std::uint64_t limit) {
        limit_ = limit;
        nextLimit_ = 0;
        place_ = 0;
        starts_.assign(1, 0);
        for (std::size_t block = 0; block < known_.size(); ++block) {
            const auto end = pass(known_[block], block + 1 == known_.size());
            if (!end) {
                return false;
            }
            starts_.push_back(*end);
        }
        return place_ == arrays_.size();
    }

    /// Where the blocks begin, and where the last one ends.
    const Starts& starts() const { return starts_; }
    /// The highest limit below the one tried that can give a different division; 0 if there is none.
    std::uint64_t nextLimit() const { return nextLimit_; }

private:
    /// @param length Empty if the block has lost it.
    /// @return where the block ends; empty if consecutive arrays do not fill it.
    std::optional<std::uint64_t> pass(const std::optional<std::uint64_t>& length, bool isLast) {
        const auto start = starts_.back();
        auto end = start;
        for (; place_ < arrays_.size() && end - start < length.value_or(limit_); ++place_) {
            if (arrays_[place_].position != end || end - start >= limit_) {
                return std::nullopt;
            }
            if (!length) {
                nextLimit_ = std::max(nextLimit_, end - start);
            }
            end += arrays_[place_].size;
        }
        return isFilled(end - start, length, isLast) ? std::optional(end) : std::nullopt;
    }

    bool isFilled(std::uint64_t bytes, const std::optional<std::uint64_t>& length, bool isLast) const {
        if (length) {
            return bytes == *length;
        }
        const bool isEnough = bytes >= limit_ || (isLast && bytes > 0);
        return isEnough && bytes <= std::numeric_limits<std::uint32_t>::max();
    }

    const std::vector<Range>& arrays_;
    const Lengths& known_;
    std::uint64_t limit_ = 0;
    std::uint64_t nextLimit_ = 0;
    std::size_t place_ = 0; ///< Index of the next array.
    Starts starts_;
};

/// The shortest known length, since only the last block can be shorter than the limit.
std::uint64_t highestLimit(const Lengths& known) {
    auto limit = std::numeric_limits<std::uint64_t>::max();
    for (std::size_t i = 0; i + 1 < known.size(); ++i) {
        limit = std::min(limit, known[i].value_or(limit));
    }
    return limit;
}

bool haveSameKnown(const Starts& left, const Starts& right, const Lengths& known) {
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i] && left[i] != right[i]) {
            return false;
        }
    }
    return true;
}

std::optional<Starts> findStarts(const std::vector<Range>& arrays, const Lengths& known) {
    Division division(arrays, known);
    std::optional<Starts> found;
    auto limit = highestLimit(known);
    for (int i = 0; i < MostLimits && limit > 0; ++i) {
        const bool fits = division.tryLimit(limit);
        if (fits && found && !haveSameKnown(*found, division.starts(), known)) {
            return std::nullopt;
        }
        if (fits && !found) {
            found = division.starts();
        }
        limit = division.nextLimit();
    }
    return limit == 0 ? found : std::nullopt;
}

} // namespace

bool findLostLengths(std::vector<BlockRecord>& blocks, const std::vector<Node>& nodes,
                     std::uint64_t fileSize) {
    if (std::ranges::none_of(blocks, hasLostLength)) {
        return false;
    }
    Lengths known;
    for (const auto& block : blocks) {
        const bool isLost = hasLostLength(block);
        if (isBeyondFile(block, fileSize) || (!isLost && hasWrongLength(block, fileSize))) {
            return false;
        }
        known.push_back(isLost ? std::nullopt : Lengths::value_type(block.contentLength));
    }
    const auto starts = findStarts(collectArrays(nodes), known);
    if (!starts) {
        return false;
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        if (!known[i]) {
            blocks[i].contentLength = static_cast<std::uint32_t>((*starts)[i + 1] - (*starts)[i]);
        }
    }
    return true;
}

} // namespace MoxReader
