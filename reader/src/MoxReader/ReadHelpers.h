#pragma once

#include "MoxReader/StreamReader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace MoxReader {

inline std::string describeNode(std::uint32_t id) {
    return "node " + std::to_string(id);
}

inline std::string describeDataset(std::uint32_t nodeId, std::uint32_t index) {
    return "dataset " + std::to_string(index) + " of " + describeNode(nodeId);
}

template <std::size_t Count>
std::array<float, Count> readFloatArray(StreamReader& stream) {
    std::array<float, Count> values{};
    for (auto& value : values) {
        value = stream.readNumber<float>();
    }
    return values;
}

/// Runs read() and returns its result; an Error from it gets the text of describe() as its record. The text
/// is made only in that case.
template <class Read, class Describe>
auto inRecord(const Read& read, const Describe& describe) {
    try {
        return read();
    } catch (const Error& error) {
        throw error.inRecord(describe());
    }
}

/// @throws Error  TrailingStreamBytes
inline void requireEnd(const StreamReader& stream) {
    if (!stream.atEnd()) {
        throw Error(ErrorCode::TrailingStreamBytes, stream.place());
    }
    if (stream.damage()) {
        throw *stream.damage();
    }
}

} // namespace MoxReader
