#pragma once

#include "MoxReader/Attributes.h"
#include "MoxReader/StreamReader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MoxReader {

/// One dataset of a geometry: what its numbers are and where they are stored.
///
/// A link shares the numbers of another dataset, see Model::resolve(); its fields from sizeInBytes to
/// position are 0.
struct Dataset {
    std::uint32_t nodeId = 0;       ///< The geometry that holds this entry. Not stored; set by readModel().
    std::uint32_t index = 0;        ///< Place in that geometry's list, from 0. Not stored.
    std::string key;                ///< As stored: the name, or the name, the byte 0x1E and the step's name.
    std::string name;               ///< The key up to the first 0x1E.
    std::string step;               ///< The key after that byte; empty without one.
    std::uint32_t variableType = 0; ///< See Format::findVariableType().
    std::uint8_t elementTag = 0;    ///< Format::FloatTag or Format::UnsignedTag.
    bool isLink = false;            ///< Whether the numbers are those of another dataset.
    std::uint32_t linkNodeId = 0;   ///< The geometry that holds the target.
    std::uint32_t linkIndex = 0;    ///< The target's place in that geometry's list.
    std::uint32_t sizeInBytes = 0;  ///< Size of the numbers: items x width x 4.
    std::uint8_t width = 0;         ///< Components for each item.
    bool boolA = false;             ///< Without a known meaning; false in known files.
    bool boolB = false;             ///< Likewise.
    float floatA = 0;               ///< Likewise; 0.
    float floatB = 0;               ///< Likewise; 0.
    bool boolC = false;             ///< Likewise; false.
    std::uint64_t position = 0;     ///< Where the numbers begin in "Heavy Data".
    bool vibration = false;         ///< The writer was given the category "Vibration".
    Attributes attributes;          ///< Empty for a link, unless its key was given again.
};

/// Reads one entry of a geometry of version "0.7" from "Light Data". Attributes stay empty.
/// @throws Error  BadValue, and those of StreamReader.
Dataset readDataset(StreamReader& light);

/// Reads the list of datasets of one geometry of version "0.7" from "Light Data". Attributes stay empty.
/// @throws Error  BadCount, BadValue, and those of StreamReader.
std::vector<Dataset> readDatasets(StreamReader& light);

} // namespace MoxReader
