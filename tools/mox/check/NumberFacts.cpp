#include "NumberFacts.h"

#include <MoxReader/Format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>

namespace MoxTool {

namespace {

constexpr std::uint64_t ChunkSize = 16384;
constexpr std::size_t Planes = MoxReader::Format::ElementSize;
constexpr std::uint32_t ExponentMask = 0x7F800000;

/// A part of one component: the numbers' lowest bytes, then their second bytes and so on.
using Chunk = std::array<std::array<std::uint8_t, ChunkSize>, Planes>;

std::uint32_t numberAt(const Chunk& chunk, std::size_t i) {
    std::uint32_t number = 0;
    for (std::size_t plane = Planes; plane-- > 0;) {
        number = number << 8 | chunk[plane][i];
    }
    return number;
}

void addFloats(NumberFacts& facts, const Chunk& chunk, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        facts.notFinite += (numberAt(chunk, i) & ExponentMask) == ExponentMask ? 1 : 0;
    }
}

void addUnsigned(NumberFacts& facts, const Chunk& chunk, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = numberAt(chunk, i);
        facts.highest = std::max(facts.highest, number);
        facts.sum += number;
    }
}

} // namespace

NumberFacts readFacts(MoxReader::StreamReader& heavy, const MoxReader::Dataset& holder) {
    NumberFacts facts = {.items = holder.sizeInBytes / Planes / holder.width, .wereRead = true};
    const auto add = holder.elementTag == MoxReader::Format::FloatTag ? addFloats : addUnsigned;
    const auto chunk = std::make_unique<Chunk>();
    for (std::uint64_t component = 0; component < holder.width; ++component) {
        const auto start = holder.position + component * Planes * facts.items;
        for (std::uint64_t first = 0; first < facts.items; first += ChunkSize) {
            const auto count = static_cast<std::size_t>(std::min(ChunkSize, facts.items - first));
            for (std::size_t plane = 0; plane < Planes; ++plane) {
                heavy.seek(start + plane * facts.items + first);
                heavy.read(std::span((*chunk)[plane]).first(count));
            }
            add(facts, *chunk, count);
        }
    }
    return facts;
}

} // namespace MoxTool
