#include "HeavyCheck.h"

#include "DatasetCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Node;
namespace Format = MoxReader::Format;

MoxReader::Model rootAlone() {
    Node root;
    root.id = 1;
    return {{root}, {}};
}

} // namespace

HeavyCheck::HeavyCheck(const MoxReader::File& source, const std::vector<Node>& nodes, bool areComplete,
                       FindingList& findings)
    : areComplete_(areComplete),
      findings_(findings),
      bare_(rootAlone()),
      data_(MoxReader::openHeavyStream(source, nodes), bare_),
      heavy_(data_.stream()) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        collect(nodes[i], static_cast<std::uint32_t>(i + 1));
    }
    std::ranges::stable_sort(ranges_, {}, &Range::position);
}

void HeavyCheck::collect(const Node& node, std::uint32_t id) {
    if (const auto* sets = node.nodeSets()) {
        hasSets_ = true;
        ranges_.push_back({sets->heavyPosition, sets->heavySize, id, nullptr, sets});
    }
    if (node.geometry() == nullptr) {
        return;
    }
    for (const auto& dataset : node.geometry()->datasets) {
        if (!dataset.isLink) {
            ranges_.push_back({dataset.position, dataset.sizeInBytes, id, &dataset, nullptr});
        }
    }
}

FactsByHolder HeavyCheck::run(const CheckProgress& progress) {
    runOnRanges(progress);
    return std::move(facts_);
}

void HeavyCheck::runOnPlaces() {
    readsNumbers_ = false;
    runOnRanges([](double) {});
}

// Reads no byte twice, whatever the descriptors say, so the work stays in proportion to the file.
void HeavyCheck::runOnRanges(const CheckProgress& progress) {
    std::uint64_t used = 0;
    for (const auto& range : ranges_) {
        if (!isInside(range)) {
            continue;
        }
        if (range.position < used) {
            findings_.add(RuleId::DatasetOverlap,
                          fmt::format("its first {} bytes belong to another one",
                                      std::min(used, range.end()) - range.position),
                          range.place());
        } else {
            reportUnused(used, range.position);
            look(range, progress);
        }
        used = std::max(used, range.end());
    }
    reportUnused(used, heavy_.size());
    checkStreamedFlags();
}

FindingPlace HeavyCheck::Range::place() const {
    return holder != nullptr ? placeOf(*holder) : FindingPlace{.node = node};
}

bool HeavyCheck::isInside(const Range& range) {
    const bool inside = range.position <= heavy_.size() && range.size <= heavy_.size() - range.position;
    if (!inside && heavy_.damage()) {
        findings_.addError(*heavy_.damage(), range.node);
    } else if (!inside) {
        findings_.add(RuleId::DatasetInside,
                      fmt::format("{} bytes at {} of {}", range.size, range.position, heavy_.size()),
                      range.place());
    }
    return inside;
}

void HeavyCheck::look(const Range& range, const CheckProgress& progress) {
    if (range.size == 0) {
        return;
    }
    progress(static_cast<double>(range.position) / static_cast<double>(heavy_.size()));
    const auto block = heavy_.blockAt(range.position);
    if (heavy_.blockAt(range.end() - 1) != block) {
        findings_.add(RuleId::DatasetOneBlock,
                      fmt::format("{} bytes at {} reach into the next block", range.size, range.position),
                      range.place());
        return;
    }
    if (!readsNumbers_) {
        return;
    }
    const bool canBeRead = isReadable(block);
    if (!canBeRead) {
        findings_.add(RuleId::NotChecked, "its numbers stand in a damaged block", range.place());
    }
    if (range.sets != nullptr && canBeRead) {
        lookAtSets(range);
    }
    if (range.holder == nullptr || !hasSoundShape(*range.holder)) {
        return;
    }
    facts_[range.holder] = canBeRead
                               ? readFacts(heavy_, *range.holder)
                               : NumberFacts{.items = range.size / Format::ElementSize / range.holder->width};
}

bool HeavyCheck::isReadable(std::size_t block) {
    if (heavy_.isKnownSound(block) || damaged_.contains(block)) {
        return heavy_.isKnownSound(block);
    }
    try {
        heavy_.seek(heavy_.blockStart(block));
        heavy_.readNumber<std::uint8_t>();
        return true;
    } catch (const MoxReader::Error& error) {
        if (error.code() == MoxReader::ErrorCode::ReadFailed) {
            throw;
        }
        damaged_.insert(block);
        return false;
    }
}

// Checks the counts first; otherwise sets of a few bytes could each claim the whole stream.
void HeavyCheck::lookAtSets(const Range& range) {
    const auto reject = [&] {
        findings_.add(RuleId::NodeSetsRecord, "its lists contradict each other or its size", range.place());
    };
    if (!areListsWhole(range)) {
        return reject();
    }
    try {
        data_.readNodeSets(*range.sets);
    } catch (const MoxReader::Error& error) {
        if (error.code() == MoxReader::ErrorCode::ReadFailed) {
            throw;
        }
        reject();
    }
}

bool HeavyCheck::areListsWhole(const Range& range) {
    constexpr std::array<std::uint64_t, 5> ElementSizes = {4, 1, 4, 4, 4};
    heavy_.seek(range.position);
    for (const auto elementSize : ElementSizes) {
        if (range.end() - heavy_.position() < 4) {
            return false;
        }
        const auto bytes = heavy_.readNumber<std::uint32_t>() * elementSize;
        if (bytes > range.end() - heavy_.position()) {
            return false;
        }
        heavy_.skip(bytes);
    }
    return heavy_.position() == range.end();
}

void HeavyCheck::reportUnused(std::uint64_t from, std::uint64_t to) {
    if (areComplete_ && from < to) {
        findings_.add(RuleId::UnusedNumbers, fmt::format("{} bytes", to - from),
                      {.stream = std::string(Format::HeavyStream), .streamOffset = from});
    }
}

// Node sets enter the stream without marking it, so nothing can be concluded if there are any.
void HeavyCheck::checkStreamedFlags() {
    if (hasSets_ || !areComplete_ || heavy_.damage()) {
        return;
    }
    for (std::size_t i = 0; i < heavy_.blocks().size(); ++i) {
        const auto& block = heavy_.blocks()[i];
        const auto expected = isStreamed(i);
        if (expected && *expected != block.isFreezable()) {
            findings_.add(RuleId::StreamedFlag,
                          *expected ? "it is not marked" : "it is marked, with one dataset",
                          {.offset = block.recordPosition, .block = block.id, .stream = block.name});
        }
    }
}

std::set<std::uint64_t> HeavyCheck::soundBlocks() const {
    std::set<std::uint64_t> sound;
    addSoundBlocks(sound, heavy_);
    return sound;
}

/// Whether another dataset was written when the block existed; empty if that can't be determined.
std::optional<bool> HeavyCheck::isStreamed(std::size_t block) const {
    if (block + 1 < heavy_.blocks().size()) {
        return true;
    }
    const auto start = heavy_.blockStart(block);
    const auto first = std::ranges::lower_bound(ranges_, start, {}, &Range::position);
    if (first == ranges_.end() || first->position >= heavy_.size()) {
        return std::nullopt;
    }
    return first->position != start || first->end() != heavy_.size();
}

} // namespace MoxTool
