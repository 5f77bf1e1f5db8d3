#pragma once

#include <Qel/Mox2/Model.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace Roundtrip {

using AttributeValue = std::variant<std::uint32_t, float, std::string, double>;
using AttributeMap = std::map<std::string, AttributeValue>;

/// What a file must hold for one dataset of a geometry.
struct ExpectedDataset {
    std::string key;
    std::uint32_t variableType;
    unsigned elementTag;
    unsigned width;
    AttributeMap attributes;
    bool vibration;
    /// The entry that holds the numbers, as the id of its geometry and its index there; itself for a full
    /// entry.
    unsigned holderNode;
    unsigned holderIndex;
    /// The bits of the numbers, row by row.
    std::vector<std::uint32_t> bits;
};

struct ExpectedNode {
    unsigned parent;
    std::string name;
    std::string typeName;
    AttributeMap attributes;
    std::vector<float> translation = {0.0F, 0.0F, 0.0F};
    std::vector<float> diffuse = {0.8F, 0.8F, 0.8F, 1.0F};
    float transparency = 0.0F;
    std::vector<ExpectedDataset> datasets;
};

/// Builds a model from random calls and records what its file must hold. The record has types of its own: it
/// shares nothing with the library or the reader.
class RandomModel {
public:
    /// @param largestRows Upper bound of the rows of a dataset.
    RandomModel(unsigned seed, unsigned arrayCalls, unsigned largestRows);

    /// Saves the model.
    void save(const std::string& path);

    /// In order of the ids, from 1.
    const std::vector<ExpectedNode>& getNodes() const { return nodes_; }

private:
    unsigned anyBelow(unsigned bound);
    template <typename T>
    const T& anyOf(const std::vector<T>& items);
    AttributeMap anyAttributes(Qel::Mox2::Attributes& attributes);
    std::string anyName();

    void addNodes(Qel::Mox2::Model& model);
    void setData(Qel::Mox2::Model& model);
    void addArray(Qel::Mox2::Model& model);
    void expectArray(const ExpectedDataset& dataset, const std::string& name,
                     const std::vector<unsigned>& ids, const std::vector<std::string>& steps,
                     const std::vector<AttributeMap>& stepAttributes);
    unsigned expectNode(unsigned parent, const std::string& name, const std::string& typeName,
                        const AttributeMap& attributes = {});

    std::mt19937 random_;
    unsigned arrayCalls_;
    unsigned largestRows_;
    unsigned arraysAdded_ = 0;
    std::vector<ExpectedNode> nodes_;
    std::vector<unsigned> groups_;
    std::vector<unsigned> geometries_;
};

} // namespace Roundtrip
