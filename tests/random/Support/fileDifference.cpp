#include "random/Support/fileDifference.h"

#include "random/Support/quoted.h"

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <array>
#include <bit>
#include <cstdint>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace RandomUse {

namespace {

/// Compares one thing after another, each under a name, up to the first difference.
class Comparison {
public:
    /// @param place Where what is compared next stands.
    void enter(const std::string& place) { place_ = place; }

    template <typename Expected, typename Found>
    void equal(const char* what, const Expected& expected, const Found& found) {
        if (difference_.empty() && !(expected == found)) {
            std::ostringstream text;
            text << place_ << ": " << what << " is ";
            write(text, found);
            text << " instead of ";
            write(text, expected);
            difference_ = text.str();
        }
    }

    template <typename Numbers, typename OtherNumbers>
    void sameBits(const char* what, const Numbers& expected, const OtherNumbers& found) {
        equal(what, bitsOf(expected), bitsOf(found));
    }

    const std::string& difference() const { return difference_; }

private:
    template <typename Numbers>
    static std::vector<std::uint32_t> bitsOf(const Numbers& numbers) {
        std::vector<std::uint32_t> bits;
        for (const auto number : numbers) {
            bits.push_back(std::bit_cast<std::uint32_t>(number));
        }
        return bits;
    }

    template <typename Value>
    static void write(std::ostream& text, const Value& value) {
        text << value;
    }
    static void write(std::ostream& text, const std::string& value) { text << quoted(value); }
    static void write(std::ostream& text, const StoredValue& value) {
        text << "kind " << value.kind << " bits " << value.bits << ' ' << quoted(value.text);
    }
    template <typename Item>
    static void write(std::ostream& text, const std::vector<Item>& items) {
        text << items.size() << " items {";
        for (std::size_t i = 0; i < items.size() && i < 24; ++i) {
            text << ' ' << +items[i];
        }
        text << " }";
    }
    static void write(std::ostream& text, const StoredAttributes& attributes) {
        for (const auto& [key, value] : attributes) {
            text << quoted(key) << ": ";
            write(text, value);
            text << "; ";
        }
    }

    std::string place_;
    std::string difference_;
};

StoredAttributes storedIn(const MoxReader::Attributes& attributes) {
    StoredAttributes result;
    for (const auto& [key, value] : attributes) {
        StoredValue& stored = result[key];
        stored.kind = static_cast<unsigned>(value.index());
        if (const auto* const number = std::get_if<std::uint32_t>(&value)) {
            stored.bits = *number;
        } else if (const auto* const real = std::get_if<float>(&value)) {
            stored.bits = std::bit_cast<std::uint32_t>(*real);
        } else if (const auto* const text = std::get_if<std::string>(&value)) {
            stored.text = *text;
        }
    }
    return result;
}

/// One file beside what it should be.
class FileComparison {
public:
    FileComparison(const std::string& path, const PlainFile& expected)
        : expected_(expected), file_(path), model_(readModel(file_)), heavy_(file_, model_) {}

    std::string difference() {
        compareFile();
        compareGlobalInformation();
        comparison_.enter("the tree");
        comparison_.equal("the number of nodes", expected_.nodes.size(), model_.nodes().size());
        for (std::size_t i = 0; i < expected_.nodes.size() && comparison_.difference().empty(); ++i) {
            compareNode(static_cast<std::uint32_t>(i + 1));
        }
        return comparison_.difference();
    }

private:
    void compareFile() {
        static const std::set<std::string> known = {"Heavy Data", "Mox Tree",  "Light Data",
                                                    "Attributes", "Resources", "Global Information"};
        comparison_.enter("the file");
        comparison_.equal("the version", std::string("1.3"), file_.version());
        comparison_.equal("the damage", std::size_t{0}, file_.index().damage.size());
        comparison_.equal("the displacement", false, file_.index().isDisplaced());
        comparison_.equal("the end of the last block", file_.size(), file_.index().end);
        for (const std::string& name : file_.streamNames()) {
            comparison_.equal(("the stream " + name).c_str(), true, known.count(name) == 1);
        }
        MoxReader::StreamReader stream = file_.stream("Heavy Data");
        comparison_.equal("the stream of numbers", expected_.heavy, stream.readBytes(stream.size()));
    }

    void compareGlobalInformation() {
        const MoxReader::GlobalInformation& global = model_.globalInformation();
        comparison_.enter("the global information");
        comparison_.equal("the number of modifiers", std::size_t{1}, global.modifiers.size());
        comparison_.equal("the number of result attributes", 0U, global.resultAttributeCount);
        if (!comparison_.difference().empty()) {
            return;
        }
        const MoxReader::ModifierInfo& modifier = global.modifiers.front();
        comparison_.equal("the record's version", std::string("0.1"), modifier.version);
        comparison_.equal("the source's name", expected_.sourceName, modifier.sourceName);
        comparison_.equal("the source's version", expected_.sourceVersion, modifier.sourceVersion);
        comparison_.equal("the format's version", std::string("1.3"), modifier.formatVersion);
        comparison_.equal("the date's presence", true, !modifier.date.empty());
        comparison_.equal("the computer", std::string(), modifier.computer);
        comparison_.equal("the user", std::string(), modifier.user);
        comparison_.equal("the comment", std::string(), modifier.comment);
    }

    void compareNode(std::uint32_t id) {
        const PlainNode& expected = expected_.nodes[id - 1];
        const MoxReader::Node& node = model_.node(id);
        comparison_.enter("node " + std::to_string(id));
        comparison_.equal("the id", id, node.id);
        comparison_.equal("the name", expected.name, node.name);
        comparison_.equal("the type", std::string(typeOf(expected.kind)), node.typeName);
        comparison_.equal("the version", std::string(versionOf(expected.kind)), node.version);
        compareLinks(id, node);
        if (const MoxReader::Group* const group = node.group()) {
            compareGroup(expected, *group);
        } else if (const MoxReader::Shape* const shape = node.shape()) {
            compareMaterial(expected, shape->material);
        } else if (const MoxReader::Geometry* const geometry = node.geometry()) {
            compareDatasets(id, expected.datasets, geometry->datasets);
        }
    }

    static const char* typeOf(NodeKind kind) {
        switch (kind) {
        case NodeKind::Group:
            return "Group";
        case NodeKind::Shape:
            return "Shape";
        case NodeKind::Geometry:
            return "Geometry";
        case NodeKind::Unset:
            break;
        }
        return "";
    }

    static const char* versionOf(NodeKind kind) {
        switch (kind) {
        case NodeKind::Group:
            return "0.4";
        case NodeKind::Shape:
            return "0.2";
        case NodeKind::Geometry:
            return "0.7";
        case NodeKind::Unset:
            break;
        }
        return "";
    }

    std::vector<std::uint32_t> childrenOf(std::uint32_t parent) const {
        std::vector<std::uint32_t> children;
        for (std::uint32_t id = 1; id <= expected_.nodes.size(); ++id) {
            if (expected_.nodes[id - 1].parent == parent) {
                children.push_back(id);
            }
        }
        return children;
    }

    // Children are linked in the order in which they were added.
    void compareLinks(std::uint32_t id, const MoxReader::Node& node) {
        const std::uint32_t parent = expected_.nodes[id - 1].parent;
        comparison_.equal("the parent", parent, node.parent);
        const std::vector<std::uint32_t> children = childrenOf(id);
        comparison_.equal("the first child", children.empty() ? 0 : children.front(), node.firstChild);
        comparison_.equal("the last child", children.empty() ? 0 : children.back(), node.lastChild);
        std::uint32_t previous = 0;
        std::uint32_t next = 0;
        for (const std::uint32_t sibling : childrenOf(parent)) {
            previous = sibling < id ? sibling : previous;
            next = sibling > id && next == 0 ? sibling : next;
        }
        comparison_.equal("the sibling before it", previous, node.previous);
        comparison_.equal("the sibling after it", next, node.next);
    }

    void compareGroup(const PlainNode& expected, const MoxReader::Group& group) {
        comparison_.equal("the kind of group", expected.groupKind, unsigned{group.kind});
        comparison_.sameBits("the translation", expected.translation, group.translation);
        comparison_.sameBits("the rotation", expected.rotation, group.rotation);
        comparison_.sameBits("the scale", expected.scale, group.scale);
        comparison_.equal("the list of attributes", expected.attributes, storedIn(group.attributes));
    }

    void compareMaterial(const PlainNode& expected, const MoxReader::Material& material) {
        const std::array<float, 3> emissive = {material.emissive[0], material.emissive[1],
                                               material.emissive[2]};
        comparison_.equal("the material's version", std::string("0.3"), material.version);
        comparison_.sameBits("the diffuse colour", expected.diffuse, material.diffuse);
        comparison_.sameBits("the specular colour", expected.specular, material.specular);
        comparison_.sameBits("the emissive colour", expected.emissive, emissive);
        comparison_.equal("the fourth number of the emissive colour", 0.0F, material.emissive[3]);
        comparison_.sameBits("the ambient colour", expected.ambient, material.ambient);
        comparison_.sameBits("the transparency", std::array{expected.transparency},
                             std::array{material.transparency});
        comparison_.sameBits("the shininess", std::array{expected.shininess}, std::array{material.shininess});
        comparison_.equal("the flag", 1U, unsigned{material.flag});
    }

    void compareDatasets(std::uint32_t id, const std::vector<PlainDataset>& expected,
                         const std::vector<MoxReader::Dataset>& datasets) {
        comparison_.equal("the number of datasets", expected.size(), datasets.size());
        for (std::size_t i = 0; i < expected.size() && comparison_.difference().empty(); ++i) {
            comparison_.enter("dataset " + std::to_string(i) + " of node " + std::to_string(id));
            compareEntry(expected[i], datasets[i]);
            if (expected[i].isLink) {
                compareTarget(id, static_cast<unsigned>(i), datasets[i]);
            } else if (comparison_.difference().empty()) {
                comparison_.equal("the list of numbers", expected[i].bits, numbersOf(datasets[i]));
            }
        }
    }

    void compareEntry(const PlainDataset& expected, const MoxReader::Dataset& dataset) {
        comparison_.equal("the key", expected.key, dataset.key);
        comparison_.equal("the variable type", expected.variableType, dataset.variableType);
        comparison_.equal("the type of its elements", expected.elementTag, unsigned{dataset.elementTag});
        comparison_.equal("the mark of a vibration", expected.isVibration, dataset.vibration);
        comparison_.equal("the list of attributes", expected.attributes, storedIn(dataset.attributes));
        comparison_.equal("being a link", expected.isLink, dataset.isLink);
        if (expected.isLink) {
            comparison_.equal("the link's node", expected.linkNode, dataset.linkNodeId);
            comparison_.equal("the link's index", expected.linkIndex, dataset.linkIndex);
            return;
        }
        comparison_.equal("the size in bytes", 4 * expected.bits.size(), std::size_t{dataset.sizeInBytes});
        comparison_.equal("the width", expected.width, unsigned{dataset.width});
        comparison_.equal("the position", expected.position, dataset.position);
        comparison_.equal("a fixed field", false, dataset.boolA || dataset.boolB || dataset.boolC);
        comparison_.equal("a fixed number", 0.0F, dataset.floatA + dataset.floatB);
    }

    // Follows the expected links; one that leads back to itself has no numbers.
    void compareTarget(std::uint32_t id, unsigned index, const MoxReader::Dataset& dataset) {
        std::set<std::pair<std::uint32_t, unsigned>> seen;
        bool isCycle = false;
        while (!isCycle && expectedEntry(id, index).isLink) {
            isCycle = !seen.insert({id, index}).second;
            const PlainDataset& link = expectedEntry(id, index);
            id = link.linkNode;
            index = link.linkIndex;
        }
        try {
            const MoxReader::Dataset& target = model_.resolve(dataset);
            comparison_.equal("being in a cycle", isCycle, false);
            comparison_.equal("the node with the numbers", id, target.nodeId);
            comparison_.equal("the entry with the numbers", index, target.index);
        } catch (const MoxReader::Error& error) {
            comparison_.equal("being in a cycle", isCycle, error.code() == MoxReader::ErrorCode::LinkCycle);
        }
    }

    const PlainDataset& expectedEntry(std::uint32_t id, unsigned index) const {
        return expected_.nodes.at(id - 1).datasets.at(index);
    }

    std::vector<std::uint32_t> numbersOf(const MoxReader::Dataset& dataset) {
        constexpr unsigned unsignedTag = 5;
        if (dataset.elementTag == unsignedTag) {
            return heavy_.readUnsigned(dataset);
        }
        std::vector<std::uint32_t> bits;
        for (const float number : heavy_.readFloats(dataset)) {
            bits.push_back(std::bit_cast<std::uint32_t>(number));
        }
        return bits;
    }

    const PlainFile& expected_;
    MoxReader::File file_;
    MoxReader::Model model_;
    MoxReader::HeavyData heavy_;
    Comparison comparison_;
};

} // namespace

std::string fileDifference(const std::string& path, const PlainFile& expected) {
    try {
        return FileComparison(path, expected).difference();
    } catch (const std::exception& error) {
        return std::string("the file can't be read: ") + error.what();
    }
}

} // namespace RandomUse
