#pragma once

#include "random/Support/Call.h"
#include "random/Support/PlainWorld.h"

#include <random>
#include <string>
#include <vector>

namespace RandomUse {

/// What most calls of a sequence are about.
enum class Kind { Nodes, Data, Arrays, Everything };

/// Makes up sequences of calls: mostly sensible ones on what the former calls have made, and some of every way in
/// which a call can be odd or wrong. A seed gives the same sequence everywhere.
class Generator {
public:
    Generator(unsigned seed, Kind kind);

    Sequence sequence();

private:
    unsigned below(unsigned bound);
    bool oneIn(unsigned count) { return below(count) == 0; }
    template <typename Item>
    const Item& anyOf(const std::vector<Item>& items);

    Call next();
    Action action(unsigned model);
    std::size_t anyKindOfAction();

    Action saveTo(unsigned model);
    Action addNode();
    Action setNodeData();
    Action addPaths();
    Action addPathsWithAttributes();
    Action addArray();
    Action setBlockSize();

    std::string name();
    std::string pathName();
    std::string arrayName();
    std::string path(const std::string& separator);
    std::string pathOf(unsigned int id, const std::string& separator);
    std::vector<std::string> namesTo(unsigned int id);
    std::optional<std::string> separator();
    unsigned int nodeId();
    unsigned int geometryId();
    float number();
    std::vector<float> numbers();
    std::string text();
    AttributeValue attributeValue();
    AttributePairs attributes();
    std::optional<AttributePairs> optionalAttributes();
    PropertyValue propertyValue(int key);
    void chooseShape(AddArray& array);
    void chooseIds(AddArray& array);
    void chooseSteps(AddArray& array);

    std::mt19937 random_;
    Kind kind_;
    PlainWorld world_;
    const PlainTree* tree_ = nullptr; // Of the model of the call; null if that is Empty.
    unsigned arrays_ = 0;
    bool isFocused_ = false; // On one geometry, which then has many datasets.
};

} // namespace RandomUse
