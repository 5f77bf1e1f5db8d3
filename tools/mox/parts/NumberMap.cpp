#include "NumberMap.h"

#include <algorithm>
#include <iterator>

namespace MoxTool {

void NumberMap::add(std::uint64_t from, std::uint64_t size, std::uint64_t to) {
    if (!runs_.empty() && runs_.back().from + runs_.back().size == from &&
        runs_.back().to + runs_.back().size == to) {
        runs_.back().size += size;
    } else if (size != 0) {
        runs_.push_back({from, size, to});
    }
}

const NumberMap::Run* NumberMap::runAt(std::uint64_t position) const {
    const auto next = std::ranges::upper_bound(runs_, position, {}, &Run::from);
    if (next == runs_.begin()) {
        return nullptr;
    }
    const auto run = std::prev(next);
    return position - run->from < run->size ? &*run : nullptr;
}

std::optional<std::uint64_t> NumberMap::find(std::uint64_t position) const {
    const auto* run = runAt(position);
    return run != nullptr ? std::optional(run->to + (position - run->from)) : std::nullopt;
}

bool NumberMap::contains(std::uint64_t position, std::uint64_t size) const {
    const auto* run = runAt(position);
    return run != nullptr && size <= run->size - (position - run->from);
}

} // namespace MoxTool
