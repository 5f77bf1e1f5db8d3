#pragma once

#include "Support/TemporaryFolder.h"
#include "inflatedByZlib.h"

#include "Support/EnvironmentGuard.h"
#include <MoxReader/File.h>
#include <MoxReader/MemorySource.h>
#include <Qel/Mox2/Model.h>

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Models that the library saves in blocks of 200 bytes, which two arrays of 25 numbers fill.
namespace SavedModel {

inline constexpr const char* BlockSize = "200";
inline constexpr unsigned ArrayLength = 25;

/// The numbers of one array: some repeat much, some little.
inline std::vector<float> numbers(unsigned array) {
    std::mt19937 random(array);
    std::vector<float> values(ArrayLength);
    for (auto& value : values) {
        value = static_cast<float>(random() % (array % 3 == 0 ? 4 : 100000)) / 8;
    }
    return values;
}

/// How the file holds them: the lowest bytes of all numbers, then the second bytes, and so on.
inline std::string stored(unsigned array) {
    std::string bytes;
    for (unsigned plane = 0; plane < 4; ++plane) {
        for (const auto value : numbers(array)) {
            bytes += static_cast<char>(std::bit_cast<std::uint32_t>(value) >> 8 * plane & 0xFF);
        }
    }
    return bytes;
}

inline void addArrays(Qel::Mox2::Model& model, unsigned count) {
    namespace Mox = Qel::Mox2;
    model.addNode(Mox::Group, "root");
    const auto part = model.addNode(Mox::Shape, "part");
    for (unsigned i = 0; i < count; ++i) {
        const auto values = numbers(i);
        Mox::Array1d<float> array(values.size());
        array.copy_from(values.data());
        model.addArrayProperty("T" + std::to_string(i), Mox::NodeScalar, array, part, Mox::Step{});
    }
}

/// @param path The path of the file.
inline void open(Qel::Mox2::Model& model, const std::string& path) {
    model.saveTo(path, {true, "Solver", "2.1", ""});
}

/// The bytes of a finished file.
inline std::vector<std::uint8_t> bytes(unsigned arrays) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, BlockSize);
    const Support::TemporaryFolder folder;
    Qel::Mox2::Model model;
    open(model, folder.path("saved.mox"));
    addArrays(model, arrays);
    model.close();
    const auto text = folder.read("saved.mox");
    return {text.begin(), text.end()};
}

} // namespace SavedModel

/// A compressed block of a sound file.
struct SoundBlock {
    std::uint64_t offset;
    std::uint64_t stored;
    std::string content;
    std::string name;

    std::uint64_t end() const { return offset + stored; }
};

/// All compressed blocks, with the content that zlib itself gives.
inline std::vector<SoundBlock> soundBlocks(const std::vector<std::uint8_t>& file) {
    const MoxReader::File reader(std::make_shared<MoxReader::MemorySource>(file));
    std::vector<SoundBlock> blocks;
    for (const auto& record : reader.blocks()) {
        if (!record.isCompressed()) {
            continue;
        }
        const auto stream = std::span(file).subspan(static_cast<std::size_t>(record.position), record.length);
        blocks.push_back({record.position, record.length, inflatedByZlib(stream.subspan(4)), record.name});
    }
    return blocks;
}
