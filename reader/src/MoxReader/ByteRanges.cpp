#include "MoxReader/ByteRanges.h"

#include <algorithm>
#include <iterator>

namespace MoxReader {

void ByteRanges::add(std::uint64_t begin, std::uint64_t end) {
    if (begin >= end) {
        return;
    }
    auto next = ends_.upper_bound(begin);
    if (next != ends_.begin() && std::prev(next)->second >= begin) {
        --next;
    }
    while (next != ends_.end() && next->first <= end) {
        begin = std::min(begin, next->first);
        end = std::max(end, next->second);
        next = ends_.erase(next);
    }
    ends_.emplace(begin, end);
}

bool ByteRanges::touch(std::uint64_t begin, std::uint64_t end) const {
    const auto after = ends_.lower_bound(end);
    return begin < end && after != ends_.begin() && std::prev(after)->second > begin;
}

} // namespace MoxReader
