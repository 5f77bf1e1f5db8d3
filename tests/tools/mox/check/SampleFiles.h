#pragma once

#include <Support/SampleModel.h>

#include <cstdint>
#include <utility>
#include <vector>

/// The hand-made sample of the reader's tests, without the one thing in it that a check warns about: its
/// connectivity names places far beyond its two coordinates. Offsets of interest in its streams are listed
/// beside the cases that use them.
inline SampleModel soundSample() {
    SampleModel sample;
    sample.heavy = patched(sample.heavy, 24, {0, 1, 0, 0, 0, 0, 0, 0});
    return sample;
}

/// A file with a single Geometry with these entries, all without attributes, over these numbers in one block.
inline TestFile loneGeometry(const std::vector<std::vector<std::uint8_t>>& entries,
                             const std::vector<std::uint8_t>& numbers, unsigned heavyFlags = 0x01) {
    Bytes light;
    Bytes attributes;
    light.u32(static_cast<std::uint32_t>(entries.size()));
    for (const auto& entry : entries) {
        light.raw(entry);
        attributes.noAttributes();
    }
    TestFile file;
    file.raw("Heavy Data", Bytes().u32(static_cast<std::uint32_t>(numbers.size())).raw(zlibStream(numbers)),
             heavyFlags);
    file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
    file.compressed("Light Data", light).compressed("Attributes", attributes);
    file.compressed("Global Information", SampleModel().global);
    return file;
}
