#pragma once

#include <MoxReader/Dataset.h>

#include <cstdint>

namespace MoxTool {

/// An entry of a dataset for a new model: what a file has of it, with the place in the new model.
struct DatasetRecord {
    const MoxReader::Dataset& dataset; ///< Its key and whether it is a vibration.
    /// Its types, size, width and fixed fields; the dataset itself if the new entry is a link.
    const MoxReader::Dataset& numbers;
    const MoxReader::Attributes& attributes;
    bool isLink = false;
    std::uint32_t linkNodeId = 0; ///< Of the new model, as the next two.
    std::uint32_t linkIndex = 0;
    std::uint64_t position = 0;
};

} // namespace MoxTool
