#include "KnownPlaces.h"

#include "zlibHeader.h"

#include <algorithm>

namespace MoxTool {

KnownPlaces::KnownPlaces(MoxReader::Source& bytes, const MoxReader::RawIndex& index) : source(bytes) {
    for (const auto& block : index.blocks) {
        if (block.isCompressed() && block.length > 0) {
            places.push_back(block.position);
        }
    }
    std::ranges::sort(places); // Displaced blocks begin before others of lower ids.
}

std::optional<std::uint64_t> KnownPlaces::find(std::uint64_t from) {
    while (next < places.size() && (places[next] < from || !canBeginBlock(source, places[next]))) {
        ++next;
    }
    return next < places.size() ? std::optional(places[next]) : std::nullopt;
}

} // namespace MoxTool
