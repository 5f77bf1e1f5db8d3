#include "RandomModel.h"

#include <algorithm>
#include <cstring>

namespace Roundtrip {

using namespace Qel::Mox2;

namespace {

struct ArrayKind {
    DatasetType type;
    unsigned width;
    std::uint32_t variableType;
};

const std::vector<ArrayKind> ArrayKinds = {
    {Coordinates, 3, 1}, {Connectivity2, 1, 6},  {Polylength1, 1, 9},      {NodeScalar, 1, 12},
    {NodeSixA, 6, 14},   {ElementVector, 3, 17}, {ElementSixB, 6, 19},     {ThirdScalar, 1, 20},
    {FourthSixB, 6, 28}, {NodeIds, 1, 12},       {DisplacementSix, 6, 14},
};

constexpr unsigned FloatTag = 1;
constexpr unsigned UnsignedTag = 5;

std::vector<float> floatsOf(const std::vector<std::uint32_t>& bits) {
    std::vector<float> values(bits.size());
    std::memcpy(values.data(), bits.data(), bits.size() * sizeof(float));
    return values;
}

template <typename T>
Array1d<T> columnOf(const std::vector<T>& values) {
    return Array1d<T>(values);
}

template <typename T>
Array2d<T> tableOf(const std::vector<T>& values, unsigned width) {
    return Array2d<T>(values.size() / width, width, values);
}

// Calls `use` with the numbers in one of the four kinds of array that can hold them.
template <typename Use>
void withArray(const std::vector<std::uint32_t>& bits, unsigned width, unsigned elementTag, bool asTable,
               Use use) {
    if (elementTag == FloatTag && asTable) {
        use(tableOf(floatsOf(bits), width));
    } else if (elementTag == FloatTag) {
        use(columnOf(floatsOf(bits)));
    } else if (asTable) {
        use(tableOf(bits, width));
    } else {
        use(columnOf(bits));
    }
}

} // namespace

RandomModel::RandomModel(unsigned seed, unsigned calls, unsigned rows)
    : random_(seed), arrayCalls_(calls), largestRows_(rows) {}

void RandomModel::save(const std::string& path) {
    Model model;
    SaverOptions options;
    options.sourceName = "random";
    model.saveTo(path, options);
    addNodes(model);
    setData(model);
    for (unsigned i = 0; i < arrayCalls_; ++i) {
        addArray(model);
    }
    model.close();
}

unsigned RandomModel::anyBelow(unsigned bound) {
    return std::uniform_int_distribution<unsigned>(0, bound - 1)(random_);
}

template <typename T>
const T& RandomModel::anyOf(const std::vector<T>& items) {
    return items[anyBelow(static_cast<unsigned>(items.size()))];
}

std::string RandomModel::anyName() {
    const std::vector<std::string> names = {"frame", "door", "", "a/b", "\xc3\xa9paisseur", "x y", "bolt 12"};
    return anyOf(names);
}

AttributeMap RandomModel::anyAttributes(Attributes& attributes) {
    AttributeMap expected;
    for (unsigned i = anyBelow(4); i > 0; --i) {
        const std::string key = "key " + std::to_string(anyBelow(6));
        const unsigned number = anyBelow(1000);
        switch (anyBelow(3)) {
        case 0:
            attributes.set(key, -static_cast<int>(number));
            expected[key] = 0U - number;
            break;
        case 1:
            attributes.set(key, static_cast<float>(number) / 8.0F);
            expected[key] = static_cast<float>(number) / 8.0F;
            break;
        default:
            attributes.set(key, std::string(number, 't'));
            expected[key] = std::string(std::min(number, 256U), 't');
        }
    }
    return expected;
}

unsigned RandomModel::expectNode(unsigned parent, const std::string& name, const std::string& typeName,
                                 const AttributeMap& attributes) {
    ExpectedNode node;
    node.parent = parent;
    node.name = name;
    node.typeName = typeName;
    node.attributes = attributes;
    nodes_.push_back(node);
    return static_cast<unsigned>(nodes_.size());
}

void RandomModel::addNodes(Model& model) {
    Attributes rootAttributes;
    const AttributeMap expectedRoot = anyAttributes(rootAttributes);
    model.addNode(RootGroup, "root", rootAttributes);
    groups_.push_back(expectNode(0, "root", "Group", expectedRoot));
    for (unsigned i = 3 + anyBelow(20); i > 0; --i) {
        const unsigned parent = anyOf(groups_);
        const std::string name = anyName();
        model.setCurrentNodeId(parent);
        if (anyBelow(2) == 0) {
            Attributes attributes;
            const AttributeMap expected = anyAttributes(attributes);
            model.addNode(Group, name, attributes);
            groups_.push_back(expectNode(parent, name, "Group", expected));
        } else {
            model.addNode(Shape, name);
            const unsigned shape = expectNode(parent, name, "Shape");
            geometries_.push_back(expectNode(shape, name, "Geometry"));
        }
    }
    model.setCurrentNodeId(1);
    model.addNode(Shape, "last");
    geometries_.push_back(expectNode(expectNode(1, "last", "Shape"), "last", "Geometry"));
}

void RandomModel::setData(Model& model) {
    for (const unsigned id : groups_) {
        NodeProperties properties;
        const std::vector<float> translation = {static_cast<float>(anyBelow(9)), -1.5F, 0.25F};
        properties.set(Translation, translation);
        model.setNodeData(id, properties);
        nodes_[id - 1].translation = translation;
    }
    for (const unsigned id : geometries_) {
        NodeProperties properties;
        const float blue = static_cast<float>(anyBelow(2));
        properties.set(DiffuseColor, std::vector<float>{0.5F, 0.25F, blue});
        properties.set(Transparency, 0.125F);
        model.setNodeData(id, properties);
        ExpectedNode& shape = nodes_[nodes_[id - 1].parent - 1];
        shape.diffuse = {0.5F, 0.25F, blue, 1.0F};
        shape.transparency = 0.125F;
    }
}

void RandomModel::addArray(Model& model) {
    const ArrayKind kind = anyOf(ArrayKinds);
    const unsigned rows = 1 + anyBelow(largestRows_);
    ExpectedDataset dataset{};
    dataset.variableType = kind.variableType;
    dataset.width = kind.width;
    dataset.elementTag = anyBelow(2) == 0 ? FloatTag : UnsignedTag;
    dataset.bits.resize(std::size_t{rows} * kind.width);
    // Also small numbers when taken as floats: random bits would include NaNs, which compare unequal to
    // themselves.
    std::generate(dataset.bits.begin(), dataset.bits.end(),
                  [&] { return 0x3F000000U + anyBelow(1U << 20U); });

    std::vector<unsigned> ids;
    for (unsigned i = 1 + anyBelow(3); i > 0; --i) {
        const unsigned id = anyOf(geometries_);
        if (std::find(ids.begin(), ids.end(), id) == ids.end()) {
            ids.push_back(id);
        }
    }
    std::vector<std::string> stepNames;
    std::vector<AttributeMap> stepAttributes;
    const unsigned stepCount = 1 + anyBelow(3);
    StepList steps(stepCount);
    for (unsigned i = 0; i < stepCount; ++i) {
        Step step;
        step.name = "step " + std::to_string(i);
        stepAttributes.push_back(anyAttributes(step.attributes));
        stepNames.push_back(step.name);
        steps.set(i, step);
    }
    Attributes attributes;
    dataset.attributes = anyAttributes(attributes);
    dataset.vibration = anyBelow(4) == 0;
    if (dataset.vibration) {
        attributes.set("Category", "Vibration");
        dataset.attributes["Category"] = std::string("Vibration");
    }
    attributes.set("Link.dropped", 1);
    // Each call uses a new name, so that no call overwrites the entry of another.
    const std::string name = "array " + std::to_string(++arraysAdded_);
    withArray(dataset.bits, kind.width, dataset.elementTag, kind.width != 1 || anyBelow(2) == 0,
              [&](const auto& array) {
                  if (ids.size() == 1 && stepCount == 1) {
                      model.addArrayProperty(name, kind.type, array, ids.front(), steps[0], attributes);
                  } else {
                      model.addArrayProperty(name, kind.type, array, Array1d<unsigned int>(ids), steps,
                                             attributes);
                  }
              });
    expectArray(dataset, name, ids, stepNames, stepAttributes);
}

void RandomModel::expectArray(const ExpectedDataset& dataset, const std::string& name,
                              const std::vector<unsigned>& ids, const std::vector<std::string>& steps,
                              const std::vector<AttributeMap>& stepAttributes) {
    const unsigned holderNode = ids.front();
    const auto holderIndex = static_cast<unsigned>(nodes_[holderNode - 1].datasets.size());
    for (const unsigned id : ids) {
        for (std::size_t step = 0; step < steps.size(); ++step) {
            ExpectedDataset entry = dataset;
            entry.key = name + '\x1e' + steps[step];
            entry.holderNode = holderNode;
            entry.holderIndex = holderIndex;
            const bool holdsNumbers = id == holderNode && step == 0;
            if (holdsNumbers) {
                entry.attributes.insert(stepAttributes[step].begin(), stepAttributes[step].end());
            } else {
                entry.attributes.clear();
            }
            nodes_[id - 1].datasets.push_back(entry);
        }
    }
}

} // namespace Roundtrip
