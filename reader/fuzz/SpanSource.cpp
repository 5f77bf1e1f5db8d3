#include "SpanSource.h"

#include <algorithm>

namespace MoxFuzz {

void SpanSource::readInside(std::uint64_t offset, std::span<std::uint8_t> target) {
    std::ranges::copy(bytes_.subspan(static_cast<std::size_t>(offset), target.size()), target.begin());
}

} // namespace MoxFuzz
