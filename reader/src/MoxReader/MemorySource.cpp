#include "MoxReader/MemorySource.h"

#include <algorithm>
#include <utility>

namespace MoxReader {

MemorySource::MemorySource(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

void MemorySource::readInside(std::uint64_t offset, std::span<std::uint8_t> target) {
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), target.size(), target.begin());
}

} // namespace MoxReader
