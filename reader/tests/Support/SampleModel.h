#pragma once

#include "Support/Bytes.h"
#include "Support/TestFile.h"

#include <string>
#include <vector>

/// The streams of a small model that holds every kind of record. Tests change a stream before they make the
/// file.
///
///     1 Group "Root"          attributes a = 7, b = "text", c = 1.5f, d = 2.25
///       2 Shape "Part"
///         3 Geometry "Part"   Coordinates (1 2 3)(4 5 6), Connectivity 0x04030201 0x08070605,
///                             Stress of Step1 0.5 -1, Stress of Step2 = a link to it
///       4 NodeSets "Sets"     "ab" = (1 4), "cde" = (2 5)(3 6)
///       5 Node "Plain"
struct SampleModel {
    SampleModel();

    std::vector<std::uint8_t> heavy;
    std::vector<std::uint8_t> tree;
    std::vector<std::uint8_t> light;
    std::vector<std::uint8_t> attributes;
    std::vector<std::uint8_t> resources;
    std::vector<std::uint8_t> global;

    TestFile file() const;
};

/// One record of the stream "Mox Tree".
struct TreeRecord {
    std::uint32_t id, parent, previous, next, firstChild, lastChild;
    std::string name, type, version;
    std::uint64_t light;
};

std::vector<std::uint8_t> treeStream(const std::vector<TreeRecord>& records);

/// The records of the sample's tree.
std::vector<TreeRecord> sampleRecords();

/// An entry of a geometry in "Light Data" whose numbers are its own.
std::vector<std::uint8_t> fullEntry(const std::string& key, std::uint32_t typeWord, std::uint32_t size,
                                    unsigned width, std::uint64_t position, bool vibration = false);
/// An entry that is a link.
std::vector<std::uint8_t> linkEntry(const std::string& key, std::uint32_t typeWord, std::uint32_t node,
                                    std::uint32_t index);

/// A material record of version "0.3".
std::vector<std::uint8_t> materialRecord();
