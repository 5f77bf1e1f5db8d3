#include "KnownPlaces.h"

#include "zlibHeader.h"

#include <algorithm>

namespace MoxTool {

KnownPlaces::KnownPlaces(MoxReader::Source& source, const MoxReader::RawIndex& index) : source_(source) {
    for (const auto& block : index.blocks) {
        if (block.isCompressed() && block.length > 0) {
            places_.push_back(block.position);
        }
    }
    std::ranges::sort(places_); // Displaced blocks begin before others of lower ids.
}

std::optional<std::uint64_t> KnownPlaces::find(std::uint64_t from) {
    while (next_ < places_.size() && (places_[next_] < from || !canBeginBlock(source_, places_[next_]))) {
        ++next_;
    }
    return next_ < places_.size() ? std::optional(places_[next_]) : std::nullopt;
}

} // namespace MoxTool
