#include "MoxReader/Node.h"

#include "MoxReader/ReadHelpers.h"

namespace MoxReader {

NodeRecord readNodeRecord(StreamReader& tree) {
    NodeRecord node;
    node.id = tree.readNumber<std::uint32_t>();
    node.parent = tree.readNumber<std::uint32_t>();
    node.previous = tree.readNumber<std::uint32_t>();
    node.next = tree.readNumber<std::uint32_t>();
    node.firstChild = tree.readNumber<std::uint32_t>();
    node.lastChild = tree.readNumber<std::uint32_t>();
    node.name = tree.readString();
    node.typeName = tree.readString();
    node.version = tree.readString();
    node.lightPosition = tree.readNumber<std::uint64_t>();
    return node;
}

std::vector<NodeRecord> readNodeRecords(StreamReader& tree) {
    const auto start = tree.place();
    const auto count = tree.readCount(Format::NodeRecordMinSize);
    if (count == 0) {
        throw Error(ErrorCode::BadCount, start);
    }
    std::vector<NodeRecord> nodes;
    for (std::uint32_t i = 0; i < count; ++i) {
        nodes.push_back(inRecord([&] { return readNodeRecord(tree); },
                                 [&] { return "node record " + std::to_string(i); }));
    }
    requireEnd(tree);
    return nodes;
}

Group readGroup(StreamReader& light) {
    Group group;
    group.translation = readFloatArray<3>(light);
    group.rotation = readFloatArray<4>(light);
    group.scale = readFloatArray<3>(light);
    group.kind = light.readNumber<std::uint8_t>();
    return group;
}

NodeSets readNodeSetsDescriptor(StreamReader& light) {
    const auto start = light.place();
    const auto size = light.readNumber<std::uint32_t>();
    if (size < Format::NodeSetsDescriptorSize) {
        throw Error(ErrorCode::BadRecordSize, start);
    }
    NodeSets descriptor;
    descriptor.setCount = light.readNumber<std::uint32_t>();
    descriptor.heavyPosition = light.readNumber<std::uint64_t>();
    descriptor.heavySize = light.readNumber<std::uint32_t>();
    light.skip(size - Format::NodeSetsDescriptorSize);
    return descriptor;
}

} // namespace MoxReader
