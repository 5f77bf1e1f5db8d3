#include "StoredShare.h"

#include <algorithm>

namespace MoxTool {

StoredShare::StoredShare(const MoxReader::StreamReader& stream) : contentEnds_{0}, storedEnds_{0} {
    for (const auto& block : stream.blocks()) {
        const auto content = block.contentLength.value_or(0);
        if (contentEnds_.back() + content > stream.size()) {
            break;
        }
        contentEnds_.push_back(contentEnds_.back() + content);
        storedEnds_.push_back(storedEnds_.back() + block.length);
    }
}

double StoredShare::of(std::uint64_t position, std::uint64_t size) const {
    const auto end = contentEnds_.back();
    const auto first = std::min(position, end);
    return storedBefore(first + std::min(size, end - first)) - storedBefore(first);
}

// Interpolates linearly between the ends of two blocks.
double StoredShare::storedBefore(std::uint64_t position) const {
    const auto found = std::lower_bound(contentEnds_.begin(), contentEnds_.end(), position);
    const auto block = static_cast<std::size_t>(found - contentEnds_.begin());
    if (block == 0) {
        return 0;
    }
    const auto content = contentEnds_[block] - contentEnds_[block - 1];
    const auto stored = storedEnds_[block] - storedEnds_[block - 1];
    const auto part = static_cast<double>(position - contentEnds_[block - 1]) / static_cast<double>(content);
    return static_cast<double>(storedEnds_[block - 1]) + part * static_cast<double>(stored);
}

} // namespace MoxTool
