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

BlockSearch::BlockSearch(MoxReader::Source& source, BlockInflater& inflater, AttemptBudget& budget)
    : source_(source), inflater_(inflater), budget_(budget) {}

std::optional<std::uint64_t> BlockSearch::findWhole(std::uint64_t from) {
    if (whole_ && *whole_ >= from) {
        return whole_;
    }
    whole_.reset();
    untried_ = std::max(untried_, from);
    while (!whole_ && !budget_.isUsedUp()) {
        const auto header = findHeader(untried_ + WordSize);
        if (!header) {
            untried_ = source_.size();
            break;
        }
        const auto place = *header - WordSize;
        if (isWhole(place)) {
            whole_ = place;
        }
        untried_ = place + 1;
    }
    return whole_;
}

std::optional<std::uint64_t> BlockSearch::findCutOff(std::uint64_t from) const {
    return cutOff_ && *cutOff_ >= from ? cutOff_ : std::nullopt;
}

bool BlockSearch::isWhole(std::uint64_t place) {
    const auto attempt = inflater_.run(place, source_.size(), [](auto) {});
    if (attempt.isWhole()) {
        cutOff_.reset();
        return true;
    }
    budget_.charge(attempt);
    if (!cutOff_ && attempt.isCutOff() && attempt.stored >= Convincing) {
        cutOff_ = place;
    }
    return false;
}

std::optional<std::uint64_t> BlockSearch::findHeader(std::uint64_t from) {
    while (from + ZlibHeader.size() <= source_.size()) {
        if (!isInWindow(from)) {
            moveWindow(from);
        }
        const auto begin = window_.begin() + static_cast<std::ptrdiff_t>(from - windowStart_);
        const auto hit = std::search(begin, window_.end(), ZlibHeader.begin(), ZlibHeader.end());
        if (hit != window_.end()) {
            return windowStart_ + static_cast<std::uint64_t>(hit - window_.begin());
        }
        from = windowStart_ + window_.size() - (ZlibHeader.size() - 1);
    }
    return std::nullopt;
}

bool BlockSearch::isInWindow(std::uint64_t place) const {
    return place >= windowStart_ && place + ZlibHeader.size() <= windowStart_ + window_.size();
}

void BlockSearch::moveWindow(std::uint64_t start) {
    window_.resize(static_cast<std::size_t>(std::min(WindowSize, source_.size() - start)));
    source_.read(start, window_);
    windowStart_ = start;
}

} // namespace MoxTool
