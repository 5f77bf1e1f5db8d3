#include "TagIndex.h"

#include <algorithm>

namespace MoxTool {

TagIndex::TagIndex(const std::vector<std::size_t>& tags) {
    places_.reserve(tags.size());
    for (std::size_t place = 0; place < tags.size(); ++place) {
        places_.emplace_back(tags[place], place);
    }
    std::sort(places_.begin(), places_.end());
}

std::optional<std::size_t> TagIndex::find(std::size_t tag) const {
    const auto found = std::lower_bound(places_.begin(), places_.end(), std::pair(tag, std::size_t{0}));
    if (found == places_.end() || found->first != tag) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace MoxTool
