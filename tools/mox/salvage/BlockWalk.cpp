#include "BlockWalk.h"

#include "../common/utf8Path.h"
#include "../common/writeFile.h"
#include "zlibHeader.h"

#include <MoxReader/Format.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace MoxTool {

namespace {

namespace Format = MoxReader::Format;

constexpr std::uint64_t TableSize = Format::tableSize(Format::IndexBlockRecords);
constexpr std::array<std::uint8_t, 4> TableCount = {Format::IndexBlockRecords}; ///< Its first word, a u32.
constexpr std::uint64_t FirstSearched = 64; ///< Searched for zeros first: usually it holds something else.
constexpr std::uint64_t MostSearched = 65536;
constexpr const char* UnfinishedFile = "unfinished"; ///< Renamed once its outcome is known.

} // namespace

BlockWalk::BlockWalk(MoxReader::Source& source, const MoxReader::RawIndex& index,
                     std::filesystem::path folder)
    : source_(source),
      folder_(std::move(folder)),
      inflater_(source),
      budget_(source.size()),
      search_(source, inflater_, budget_),
      known_(source, index) {}

void BlockWalk::run(const std::function<void(double)>& progress) {
    std::uint64_t position = Format::FirstBlockPosition;
    while (position < source_.size()) {
        progress(static_cast<double>(position) / static_cast<double>(source_.size()));
        position = step(position);
    }
    std::filesystem::remove(folder_ / UnfinishedFile);
}

/// @return where the next block is to be expected.
std::uint64_t BlockWalk::step(std::uint64_t position) {
    const auto attempt = inflate(position, source_.size());
    if (attempt.isWhole()) {
        keep(attempt);
        return attempt.end();
    }
    budget_.charge(attempt);
    if (const auto table = findTable(position)) {
        addGap(position, position + TableSize, *table);
        return position + TableSize;
    }
    const auto end = findNext(attempt).value_or(source_.size());
    keepBeginning(attempt, end);
    return end;
}

/// Writes the content to the unfinished file.
BlockAttempt BlockWalk::inflate(std::uint64_t position, std::uint64_t end) {
    BlockAttempt attempt;
    writeFile(folder_ / UnfinishedFile, SalvagedBlock{saved_.size() + 1, {}}.fileName(),
              [&](std::ostream& out) {
                  attempt = inflater_.run(position, end, [&](std::span<const std::uint8_t> content) {
                      out.write(reinterpret_cast<const char*>(content.data()),
                                static_cast<std::streamsize>(content.size()));
                  });
              });
    return attempt;
}

void BlockWalk::keep(const BlockAttempt& attempt) {
    saved_.push_back({saved_.size() + 1, attempt});
    std::filesystem::rename(folder_ / UnfinishedFile, folder_ / pathOf(saved_.back().fileName()));
}

// This block's bytes have ended where another block begins, so any content made from later bytes is wrong.
void BlockWalk::keepBeginning(BlockAttempt attempt, std::uint64_t end) {
    if (attempt.end() > end) {
        attempt = inflate(attempt.offset, end);
    }
    if (attempt.inflated > 0) {
        keep(attempt);
    }
    const auto lostFrom = attempt.inflated > 0 ? attempt.end() : attempt.offset;
    addGap(lostFrom, end, isZero(lostFrom, end) ? "zeros" : "nothing that can be inflated");
}

std::optional<std::uint64_t> BlockWalk::findNext(const BlockAttempt& failed) {
    const auto from = failed.offset + 1;
    const auto found = search_.findWhole(from);
    if (budget_.isUsedUp()) {
        unsearched_ = from;
        return std::nullopt;
    }
    const auto listed = known_.find(from);
    if (found && listed) {
        return std::min(*found, *listed);
    }
    if (found || listed) {
        return found ? found : listed;
    }
    return failed.isCutOff() ? std::nullopt : search_.findCutOff(from);
}

/// @return a description of what is there, if it is an index table, or the zeros of one that was never filled
/// in, followed by a block.
std::optional<std::string> BlockWalk::findTable(std::uint64_t position) {
    const auto end = position + TableSize;
    if (!canBeginBlock(source_, end)) {
        return std::nullopt;
    }
    if (isZero(position, end)) {
        return "the place of an index table, all zeros";
    }
    std::array<std::uint8_t, Format::tableSize(1)> start{};
    source_.read(position, start);
    const auto record = MoxReader::parseBlockRecord(std::span(start).last<Format::RecordSize>());
    const bool hasCount = std::equal(TableCount.begin(), TableCount.end(), start.begin());
    if (!hasCount || record.nameLength != Format::NameSize) {
        return std::nullopt;
    }
    return "an index table";
}

bool BlockWalk::isZero(std::uint64_t from, std::uint64_t to) {
    std::vector<std::uint8_t> bytes;
    for (auto size = FirstSearched; from < to;
         from += bytes.size(), size = std::min(2 * size, MostSearched)) {
        bytes.resize(static_cast<std::size_t>(std::min(size, to - from)));
        source_.read(from, bytes);
        if (std::ranges::any_of(bytes, [](auto byte) { return byte != 0; })) {
            return false;
        }
    }
    return true;
}

void BlockWalk::addGap(std::uint64_t from, std::uint64_t to, const std::string& what) {
    if (from < to) {
        lost_.push_back({from, to - from, what});
    }
}

} // namespace MoxTool
