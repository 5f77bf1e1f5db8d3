#pragma once

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Api {

/// A finished file as the independent reader sees it.
class SavedModel {
public:
    explicit SavedModel(const std::string& path);
    SavedModel(const SavedModel&) = delete;
    SavedModel& operator=(const SavedModel&) = delete;

    const MoxReader::File& file() const { return opened_; }
    const MoxReader::Model& model() const { return tree_; }
    const MoxReader::Node& node(std::uint32_t id) const { return tree_.node(id); }
    std::size_t nodeCount() const { return tree_.nodes().size(); }

    // The node with this id, which must be of the requested kind.
    const MoxReader::Group& group(std::uint32_t id) const;
    const MoxReader::Material& material(std::uint32_t id) const;
    const std::vector<MoxReader::Dataset>& datasets(std::uint32_t id) const;

    std::vector<float> floats(const MoxReader::Dataset& dataset) { return heavy_.readFloats(dataset); }
    std::vector<std::uint32_t> integers(const MoxReader::Dataset& dataset) {
        return heavy_.readUnsigned(dataset);
    }

    /// A whole stream, decompressed.
    std::vector<std::uint8_t> stream(std::string_view name) const;

private:
    MoxReader::File opened_;
    MoxReader::Model tree_;
    MoxReader::HeavyData heavy_;
};

} // namespace Api
