#pragma once

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// A saved file, read through the reader library.
class ReadBack {
public:
    explicit ReadBack(const std::string& path)
        : file_(path), contents_(MoxReader::readModel(file_)), heavy_(file_, contents_) {}

    const MoxReader::Model& model() const { return contents_; }

    /// The geometries of all shapes, in order.
    std::vector<const MoxReader::Node*> geometries() const {
        std::vector<const MoxReader::Node*> found;
        for (const auto& node : contents_.nodes()) {
            if (node.geometry() != nullptr) {
                found.push_back(&node);
            }
        }
        return found;
    }

    static bool has(const MoxReader::Node& geometry, const std::string& name, const std::string& step = "") {
        return find(geometry, name, step) != nullptr;
    }

    /// @throws std::runtime_error if the geometry has no such dataset.
    static const MoxReader::Dataset& dataset(const MoxReader::Node& geometry, const std::string& name,
                                             const std::string& step = "") {
        if (const auto* found = find(geometry, name, step)) {
            return *found;
        }
        throw std::runtime_error("no dataset " + name + " " + step);
    }

    /// The attributes of the dataset that holds the numbers.
    const MoxReader::Attributes& attributes(const MoxReader::Dataset& dataset) const {
        return contents_.resolve(dataset).attributes;
    }
    std::vector<float> floats(const MoxReader::Dataset& dataset) { return heavy_.readFloats(dataset); }
    std::vector<std::uint32_t> integers(const MoxReader::Dataset& dataset) {
        return heavy_.readUnsigned(dataset);
    }
    /// The numbers as the file has them, of any type.
    std::vector<std::uint8_t> bytes(const MoxReader::Dataset& dataset) { return heavy_.readBytes(dataset); }

private:
    static const MoxReader::Dataset* find(const MoxReader::Node& geometry, const std::string& name,
                                          const std::string& step) {
        for (const auto& dataset : geometry.geometry()->datasets) {
            if (dataset.name == name && dataset.step == step) {
                return &dataset;
            }
        }
        return nullptr;
    }

    MoxReader::File file_;
    MoxReader::Model contents_;
    MoxReader::HeavyData heavy_;
};

/// A text among attributes; empty if there is none.
inline std::string textOf(const MoxReader::Attributes& attributes, const std::string& key) {
    const auto found = attributes.find(key);
    const auto* text = found == attributes.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text == nullptr ? "" : *text;
}

/// An integer among attributes; 0xFFFFFFFF if there is none.
inline std::uint32_t integerOf(const MoxReader::Attributes& attributes, const std::string& key) {
    const auto found = attributes.find(key);
    const auto* value = found == attributes.end() ? nullptr : std::get_if<std::uint32_t>(&found->second);
    return value == nullptr ? 0xFFFFFFFF : *value;
}
