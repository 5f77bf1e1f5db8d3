#include "BlockSearch.h"

#include "zlibHeader.h"

#include <MoxReader/Format.h>

#include <algorithm>

namespace MoxTool {

namespace {

constexpr std::uint64_t WordSize = MoxReader::Format::ContentWordSize;
constexpr std::uint64_t WindowSize = 65536;
constexpr std::uint64_t Convincing = 512; ///< Bytes that pass for a stream; random ones give far fewer.

} // namespace

BlockSearch::BlockSearch(MoxReader::Source& bytes, BlockInflater& blockInflater, AttemptBudget& attemptBudget)
    : source(bytes), inflater(blockInflater), budget(attemptBudget) {}

std::optional<std::uint64_t> BlockSearch::findWhole(std::uint64_t from) {
    if (whole && *whole >= from) {
        return whole;
    }
    whole.reset();
    untried = std::max(untried, from);
    while (!whole && !budget.isUsedUp()) {
        const auto header = findHeader(untried + WordSize);
        if (!header) {
            untried = source.size();
            break;
        }
        const auto place = *header - WordSize;
        if (isWhole(place)) {
            whole = place;
        }
        untried = place + 1;
    }
    return whole;
}

std::optional<std::uint64_t> BlockSearch::findCutOff(std::uint64_t from) const {
    return cutOff && *cutOff >= from ? cutOff : std::nullopt;
}

bool BlockSearch::isWhole(std::uint64_t place) {
    const auto attempt = inflater.run(place, source.size(), [](auto) {});
    if (attempt.isWhole()) {
        cutOff.reset();
        return true;
    }
    budget.charge(attempt);
    if (!cutOff && attempt.isCutOff() && attempt.stored >= Convincing) {
        cutOff = place;
    }
    return false;
}

std::optional<std::uint64_t> BlockSearch::findHeader(std::uint64_t from) {
    while (from + ZlibHeader.size() <= source.size()) {
        if (!isInWindow(from)) {
            moveWindow(from);
        }
        const auto begin = window.begin() + static_cast<std::ptrdiff_t>(from - windowStart);
        const auto hit = std::search(begin, window.end(), ZlibHeader.begin(), ZlibHeader.end());
        if (hit != window.end()) {
            return windowStart + static_cast<std::uint64_t>(hit - window.begin());
        }
        from = windowStart + window.size() - (ZlibHeader.size() - 1);
    }
    return std::nullopt;
}

bool BlockSearch::isInWindow(std::uint64_t place) const {
    return place >= windowStart && place + ZlibHeader.size() <= windowStart + window.size();
}

void BlockSearch::moveWindow(std::uint64_t start) {
    window.resize(static_cast<std::size_t>(std::min(WindowSize, source.size() - start)));
    source.read(start, window);
    windowStart = start;
}

} // namespace MoxTool
