#include "mendStreams.h"

#include "littleEndian.h"

#include <algorithm>
#include <string>

namespace MoxFuzz {

namespace {

constexpr std::size_t MostNodes = 64;
constexpr std::size_t MostDatasets = 64;
constexpr std::size_t LinkWords = 6; ///< Id, parent, previous, next, first child, last child.

/// Goes through records as far as they reach; what is missing is empty.
class Walk {
public:
    explicit Walk(const Bytes& bytes) : bytes_(bytes) {}

    std::size_t place() const { return place_; }
    bool has(std::size_t size) const { return size <= bytes_.size() - place_; }

    bool skip(std::size_t size) {
        const bool isThere = has(size);
        place_ += isThere ? size : 0;
        return isThere;
    }

    std::uint32_t peekWord() const { return has(4) ? wordAt(bytes_, place_) : 0; }

    /// A length or count of things of one size, and the things.
    bool skipList(std::size_t itemSize) { return has(4) && skip(4 + std::size_t{peekWord()} * itemSize); }

    std::string text() {
        const auto start = place_ + 4;
        return skipList(1) ? std::string(bytes_.begin() + static_cast<std::ptrdiff_t>(start),
                                         bytes_.begin() + static_cast<std::ptrdiff_t>(place_))
                           : std::string();
    }

    bool skipTexts() {
        const auto count = peekWord();
        bool isThere = skip(4);
        for (std::uint32_t i = 0; i < count && isThere; ++i) {
            isThere = skipList(1);
        }
        return isThere;
    }

private:
    const Bytes& bytes_;
    std::size_t place_ = 0;
};

struct NodeRecord {
    std::uint32_t parent = 0;
    Bytes texts;
    std::string type;
    std::size_t position = 0;
    std::array<std::uint32_t, 4> relatives{}; ///< Previous, next, first child, last child.
};

std::vector<NodeRecord> readNodes(const Bytes& tree) {
    std::vector<NodeRecord> nodes;
    Walk walk(tree);
    walk.skip(4);
    while (walk.has(LinkWords * 4 + 3 * 4) && nodes.size() < MostNodes) {
        NodeRecord node;
        node.parent = wordAt(tree, walk.place() + 4);
        walk.skip(LinkWords * 4);
        const auto start = walk.place();
        walk.skipList(1);
        node.type = walk.text();
        walk.skipList(1);
        node.texts.assign(tree.begin() + static_cast<std::ptrdiff_t>(start),
                          tree.begin() + static_cast<std::ptrdiff_t>(walk.place()));
        walk.skip(8);
        nodes.push_back(std::move(node));
        if (walk.place() == start) {
            break;
        }
    }
    return nodes;
}

void linkNodes(std::vector<NodeRecord>& nodes) {
    for (std::uint32_t i = 0; i < nodes.size(); ++i) {
        auto& node = nodes[i];
        node.parent = i == 0 ? 0 : node.parent >= 1 && node.parent <= i ? node.parent : 1;
        if (i == 0) {
            continue;
        }
        auto& [previous, next, first, last] = nodes[node.parent - 1].relatives;
        if (last == 0) {
            first = i + 1;
        } else {
            nodes[last - 1].relatives[1] = i + 1;
            node.relatives[0] = last;
        }
        last = i + 1;
    }
}

Bytes writeNodes(const std::vector<NodeRecord>& nodes) {
    Bytes tree;
    appendWord(tree, static_cast<std::uint32_t>(nodes.size()));
    for (std::uint32_t i = 0; i < nodes.size(); ++i) {
        const auto& node = nodes[i];
        appendWord(tree, i + 1);
        appendWord(tree, node.parent);
        for (const auto relative : node.relatives) {
            appendWord(tree, relative);
        }
        tree.insert(tree.end(), node.texts.begin(), node.texts.end());
        appendWord(tree, static_cast<std::uint32_t>(node.position));
        appendWord(tree, 0);
    }
    return tree;
}

bool skipDataset(Walk& walk, const Bytes& light) {
    constexpr std::size_t LinkSize = 14;
    constexpr std::size_t HolderSize = 30;
    if (!walk.skipList(1) || !walk.has(LinkSize)) {
        return false;
    }
    const bool isLink = light[walk.place() + 4] == 1;
    return walk.skip(isLink ? LinkSize : HolderSize);
}

/// Ends a stream after the last whole record, so that what follows can be appended.
void cutAt(Bytes& stream, const Walk& walk) {
    stream.resize(walk.place());
}

/// Goes through the datasets of a geometry and mends their count if the stream ends before the last.
std::size_t mendDatasets(Walk& walk, Bytes& light) {
    const auto start = walk.place();
    if (!walk.skip(4)) {
        cutAt(light, walk);
        appendWord(light, 0);
        walk.skip(4);
        return 0;
    }
    const auto stated = std::min<std::size_t>(wordAt(light, start), MostDatasets);
    std::size_t count = 0;
    while (count < stated && skipDataset(walk, light)) {
        ++count;
    }
    setWord(light, start, static_cast<std::uint32_t>(count));
    return count;
}

/// Goes over a record of a fixed size, and appends one of zeros if there is none.
void mendFixed(Walk& walk, Bytes& stream, std::size_t size) {
    if (!walk.skip(size)) {
        cutAt(stream, walk);
        stream.resize(stream.size() + size);
        walk.skip(size);
    }
}

/// Sets the positions. @return how many records of attributes the nodes need.
std::size_t mendLight(std::vector<NodeRecord>& nodes, Bytes& light) {
    constexpr std::size_t GroupSize = 41;
    constexpr std::size_t SetsSize = 20;
    std::size_t records = 0;
    Walk walk(light);
    for (auto& node : nodes) {
        node.position = walk.place();
        if (node.type == "Group") {
            mendFixed(walk, light, GroupSize);
            ++records;
        } else if (node.type == "Geometry") {
            records += mendDatasets(walk, light);
        } else if (node.type == "NodeSets") {
            const auto start = walk.place();
            mendFixed(walk, light, SetsSize);
            setWord(light, start, SetsSize - 4);
        }
    }
    cutAt(light, walk);
    return records;
}

void mendAttributes(Bytes& attributes, std::size_t records) {
    constexpr std::size_t EmptySize = 24;
    Walk walk(attributes);
    std::size_t whole = 0;
    std::size_t end = 0;
    while (whole < records && walk.skipTexts() && walk.skipList(1) && walk.skipList(4) && walk.skipList(4) &&
           walk.skipList(8) && walk.skipTexts()) {
        ++whole;
        end = walk.place();
    }
    attributes.resize(end);
    attributes.resize(end + (records - whole) * EmptySize);
}

void mendResources(Bytes& resources, std::size_t shapes) {
    constexpr std::uint32_t Size = 84;
    constexpr std::size_t LeastSize = 4 + 4 + 3;
    Walk walk(resources);
    for (std::size_t i = 0; i < shapes; ++i) {
        const auto stated = walk.peekWord();
        if (stated >= LeastSize && walk.skip(stated)) {
            continue;
        }
        const auto start = walk.place();
        mendFixed(walk, resources, Size);
        constexpr std::string_view Version = "0.3";
        setWord(resources, start, Size);
        setWord(resources, start + 4, static_cast<std::uint32_t>(Version.size()));
        std::ranges::copy(Version, resources.begin() + static_cast<std::ptrdiff_t>(start) + 8);
    }
    cutAt(resources, walk);
}

} // namespace

void mendStreams(Streams& streams) {
    auto nodes = readNodes(streams.contents[Streams::Tree]);
    if (nodes.empty()) {
        return;
    }
    linkNodes(nodes);
    const auto records = mendLight(nodes, streams.contents[Streams::Light]);
    const auto isShape = [](const auto& node) { return node.type == "Shape"; };
    const auto shapes = static_cast<std::size_t>(std::ranges::count_if(nodes, isShape));
    mendAttributes(streams.contents[Streams::Attributes], records);
    mendResources(streams.contents[Streams::Resources], shapes);
    streams.contents[Streams::Tree] = writeNodes(nodes);
}

} // namespace MoxFuzz
