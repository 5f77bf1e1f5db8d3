#include "random/Support/PlainStream.h"

#include <cctype>

namespace RandomUse {

namespace {

// The value of leading digits, with a sign, cut to what 32 bits hold.
std::uint64_t limitOf(const std::optional<std::string>& blockSize) {
    constexpr std::uint64_t whenUnset = 209715200;
    constexpr std::uint64_t largest = 0xFFFFFFFF;
    if (!blockSize) {
        return whenUnset;
    }
    std::size_t place = 0;
    while (place < blockSize->size() && std::isspace(static_cast<unsigned char>((*blockSize)[place])) != 0) {
        ++place;
    }
    bool isNegative = false;
    if (place < blockSize->size() && ((*blockSize)[place] == '-' || (*blockSize)[place] == '+')) {
        isNegative = (*blockSize)[place] == '-';
        ++place;
    }
    std::uint64_t number = 0;
    while (place < blockSize->size() && (*blockSize)[place] >= '0' && (*blockSize)[place] <= '9') {
        number = number * 10 + static_cast<std::uint64_t>((*blockSize)[place] - '0');
        if (number >= largest) {
            return whenUnset;
        }
        ++place;
    }
    if (isNegative) {
        number = (largest + 1 - number) % (largest + 1);
    }
    return number >= largest ? whenUnset : number;
}

} // namespace

std::uint64_t PlainStream::put(const std::vector<std::uint32_t>& bits, unsigned width,
                               const std::optional<std::string>& blockSize) {
    if (blocks_.empty()) {
        limit_ = limitOf(blockSize);
    }
    for (Block& block : blocks_) {
        block.canGoOut = true;
    }
    if (blocks_.empty() || blocks_.back().hasGoneOut || blocks_.back().size >= limit_) {
        blocks_.emplace_back();
    }
    blocks_.back().size += 4 * bits.size();

    const std::uint64_t position = bytes_.size();
    for (std::size_t component = 0; component < width; ++component) {
        for (unsigned plane = 0; plane < 4; ++plane) {
            for (std::size_t place = component; place < bits.size(); place += width) {
                bytes_.push_back(static_cast<std::uint8_t>(bits[place] >> (8 * plane)));
            }
        }
    }
    return position;
}

bool PlainStream::flushFails(bool hasFile) {
    for (Block& block : blocks_) {
        if (block.canGoOut && !block.hasGoneOut && block.size >= limit_) {
            block.hasGoneOut = true;
            if (!hasFile) {
                return true;
            }
        }
    }
    return false;
}

} // namespace RandomUse
