#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace RandomUse {

/// The value of an attribute as a file keeps it.
struct StoredValue {
    unsigned kind = 0;      ///< 0 for an integer, 1 for a float, 2 for a text.
    std::uint32_t bits = 0; ///< Of a number.
    std::string text;

    bool operator==(const StoredValue&) const = default;
};

using StoredAttributes = std::map<std::string, StoredValue>;

struct PlainDataset {
    std::string key;
    std::uint32_t variableType = 0;
    unsigned elementTag = 0;
    unsigned width = 0;
    std::vector<std::uint32_t> bits; ///< Of the numbers that were given last, row by row.
    std::uint64_t position = 0;
    StoredAttributes attributes;
    bool isVibration = false;
    bool isLink = false;
    unsigned linkNode = 0;
    unsigned linkIndex = 0;
};

enum class NodeKind { Unset, Group, Shape, Geometry };

/// A node with what any kind of node can have.
struct PlainNode {
    unsigned parent = 0;
    NodeKind kind = NodeKind::Unset;
    std::string name;
    // Of a group.
    unsigned groupKind = 0;
    std::array<float, 3> translation = {0, 0, 0};
    std::array<float, 4> rotation = {0, 0, 1, 0};
    std::array<float, 3> scale = {1, 1, 1};
    StoredAttributes attributes;
    // Of a shape.
    std::array<float, 4> diffuse = {0.8F, 0.8F, 0.8F, 1};
    std::array<float, 4> specular = {0, 0, 0, 1};
    std::array<float, 3> emissive = {0, 0, 0};
    std::array<float, 4> ambient = {0.8F * 0.2F, 0.8F * 0.2F, 0.8F * 0.2F, 0.2F};
    float transparency = 0;
    float shininess = 0.2F;
    // Of a geometry.
    std::vector<PlainDataset> datasets;
};

/// What a finished file must hold.
struct PlainFile {
    std::string sourceName;
    std::string sourceVersion;
    std::vector<PlainNode> nodes; ///< In order of their ids, from 1.
    std::vector<std::uint8_t> heavy;
};

} // namespace RandomUse
