#include "BlockWalk.h"

#include "../extract/writeFile.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace MoxTool {

namespace {

namespace Format = MoxReader::Format;

constexpr std::uint64_t WordSize = Format::ContentWordSize;
constexpr std::array<std::uint8_t, 2> ZlibHeader = {0x78, 0x9C}; ///< Of the level at which blocks are made.
constexpr std::uint64_t Window = 65536;
constexpr std::uint64_t FailuresPerByte = 4;

} // namespace

BlockWalk::BlockWalk(MoxReader::Source& bytes, const MoxReader::RawIndex& names)
    : source(bytes), index(names), budget(FailuresPerByte * bytes.size() + Window) {}

void BlockWalk::run(const std::filesystem::path& folder, const std::function<void(double)>& progress) {
    std::uint64_t position = Format::FirstBlockPosition;
    while (position < source.size()) {
        progress(static_cast<double>(position) / static_cast<double>(source.size()));
        if (const auto end = take(position, folder)) {
            position = *end;
            continue;
        }
        const auto what = describeFailure();
        auto next = findCandidate(position + 1);
        std::optional<std::uint64_t> end;
        while (next && !(end = take(*next, folder)))
            next = findCandidate(*next + 1);
        addGap(position, next.value_or(source.size()), what);
        position = end.value_or(source.size());
    }
}

/// @return the end of the block, if one stands there and is whole.
std::optional<std::uint64_t> BlockWalk::take(std::uint64_t position, const std::filesystem::path& folder) {
    attempt = {};
    stated = 0;
    if (source.size() - position < WordSize)
        return std::nullopt;
    std::array<std::uint8_t, WordSize> word{};
    source.read(position, word);
    for (std::size_t i = word.size(); i-- > 0;)
        stated = stated << 8 | word[i];
    if (stated > (source.size() - position) * Format::ZlibMaxExpansion)
        return std::nullopt;
    const auto name = fmt::format("block-{:04}.raw", found.size() + 1);
    const auto path = folder / name;
    writeFile(path, name,
              [&](std::ostream& out) { attempt = inflateStream(source, position + WordSize, stated, out); });
    if (attempt.outcome == InflateResult::Whole) {
        const auto stored = WordSize + attempt.consumed;
        found.push_back({position, stored, stated, nameAt(position), name});
        return position + stored;
    }
    std::filesystem::remove(path);
    budget -= std::min(budget, attempt.consumed + WordSize);
    return std::nullopt;
}

/// The next place from which a block could begin, by the header of its zlib stream.
std::optional<std::uint64_t> BlockWalk::findCandidate(std::uint64_t from) {
    std::vector<std::uint8_t> bytes;
    for (auto start = from + WordSize; start + ZlibHeader.size() <= source.size();
         start += bytes.size() - (ZlibHeader.size() - 1)) {
        if (budget == 0)
            return std::nullopt;
        bytes.resize(static_cast<std::size_t>(std::min(Window, source.size() - start)));
        source.read(start, bytes);
        const auto hit = std::search(bytes.begin(), bytes.end(), ZlibHeader.begin(), ZlibHeader.end());
        if (hit != bytes.end())
            return start - WordSize + static_cast<std::uint64_t>(hit - bytes.begin());
    }
    return std::nullopt;
}

std::string BlockWalk::describeFailure() const {
    if (attempt.outcome == InflateResult::CutOff && attempt.produced > 0)
        return fmt::format("a block that is cut off: {} of {} bytes of its content are there",
                           attempt.produced, stated);
    if (attempt.produced > 0)
        return fmt::format("a damaged block: it can be followed for {} of {} bytes of its content",
                           attempt.produced, stated);
    return "no compressed block";
}

void BlockWalk::addGap(std::uint64_t from, std::uint64_t to, const std::string& what) {
    const auto size = to - from;
    const bool isTable = size == Format::tableSize(Format::IndexBlockRecords);
    if (isZero(from, to))
        lost.push_back(
            {from, size, isTable ? "the place of an index table that was never written" : "zeros"});
    else
        lost.push_back({from, size, isTable ? "an index table" : what});
}

bool BlockWalk::isZero(std::uint64_t from, std::uint64_t to) {
    std::vector<std::uint8_t> bytes;
    for (; from < to; from += bytes.size()) {
        bytes.resize(static_cast<std::size_t>(std::min(Window, to - from)));
        source.read(from, bytes);
        if (std::ranges::any_of(bytes, [](auto byte) { return byte != 0; }))
            return false;
    }
    return true;
}

// Among blocks at one place the last is the one that has bytes.
std::string BlockWalk::nameAt(std::uint64_t position) const {
    const auto behind =
        std::ranges::upper_bound(index.blocks, position, {}, &MoxReader::BlockRecord::position);
    if (behind == index.blocks.begin())
        return "";
    const auto& block = *std::prev(behind);
    return block.position == position && !block.isEmptyEntry() ? block.name : "";
}

} // namespace MoxTool
