#include "Streams.h"

#include <algorithm>

namespace MoxFuzz {

Streams Streams::fromInput(ByteSpan input) {
    Streams streams;
    if (input.size() < HeadSize) {
        return streams;
    }
    streams.division = input[0];
    auto left = input.subspan(HeadSize);
    for (std::size_t i = 0; i < Count; ++i) {
        const std::size_t stated =
            i == Heavy ? left.size() : input[1 + 2 * i] + std::size_t{input[2 + 2 * i]} * 256;
        const auto part = left.first(std::min(stated, left.size()));
        streams.contents[i].assign(part.begin(), part.end());
        left = left.subspan(part.size());
    }
    return streams;
}

Bytes Streams::toInput() const {
    Bytes input = {division};
    for (std::size_t i = 0; i < Heavy; ++i) {
        input.push_back(static_cast<std::uint8_t>(contents[i].size()));
        input.push_back(static_cast<std::uint8_t>(contents[i].size() >> 8));
    }
    for (const auto& content : contents) {
        input.insert(input.end(), content.begin(), content.end());
    }
    return input;
}

std::size_t Streams::inputSize() const {
    std::size_t size = HeadSize;
    for (const auto& content : contents) {
        size += content.size();
    }
    return size;
}

} // namespace MoxFuzz
