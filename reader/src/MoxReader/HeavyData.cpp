#include "MoxReader/HeavyData.h"

#include "MoxReader/BlockLengths.h"
#include "MoxReader/ReadHelpers.h"
#include "MoxReader/Shuffle.h"

#include <algorithm>

namespace MoxReader {

namespace {

std::string describe(const Dataset& dataset) {
    return describeDataset(dataset.nodeId, dataset.index);
}

void requireWholeItems(const Dataset& holder) {
    const auto itemSize = std::uint32_t{holder.width} * Format::ElementSize;
    const bool isWhole = itemSize == 0 ? holder.sizeInBytes == 0 : holder.sizeInBytes % itemSize == 0;
    if (!isWhole) {
        throw Error(ErrorCode::BadDatasetSize, {.record = describe(holder)});
    }
}

/// The payload of a NodeSets node: its lists, in file order.
struct SetLists {
    std::vector<std::uint32_t> nameOffsets;
    std::string names;
    std::vector<std::uint32_t> memberOffsets;
    std::vector<std::uint32_t> firsts;
    std::vector<std::uint32_t> seconds;
};

SetLists readSetLists(StreamReader& heavy) {
    SetLists lists;
    lists.nameOffsets = heavy.readNumbers<std::uint32_t>();
    lists.names = heavy.readString();
    lists.memberOffsets = heavy.readNumbers<std::uint32_t>();
    lists.firsts = heavy.readNumbers<std::uint32_t>();
    lists.seconds = heavy.readNumbers<std::uint32_t>();
    return lists;
}

/// There is one more offset than there are sets; they rise from 0 to the size of what they divide.
bool areOffsets(const std::vector<std::uint32_t>& offsets, std::uint32_t sets, std::size_t size) {
    return offsets.size() == std::size_t{sets} + 1 && offsets.front() == 0 &&
           std::ranges::is_sorted(offsets) && offsets.back() == size;
}

bool areSound(const SetLists& lists, std::uint32_t sets) {
    return areOffsets(lists.nameOffsets, sets, lists.names.size()) &&
           areOffsets(lists.memberOffsets, sets, lists.firsts.size()) &&
           lists.firsts.size() == lists.seconds.size();
}

NodeSet makeSet(const SetLists& lists, std::size_t index) {
    NodeSet set;
    const auto nameStart = lists.nameOffsets[index];
    set.name = lists.names.substr(nameStart, lists.nameOffsets[index + 1] - nameStart);
    for (auto i = lists.memberOffsets[index]; i < lists.memberOffsets[index + 1]; ++i) {
        set.members.emplace_back(lists.firsts[i], lists.seconds[i]);
    }
    return set;
}

} // namespace

StreamReader openHeavyStream(const File& file, const std::vector<Node>& nodes) {
    auto stream = file.stream(Format::HeavyStream);
    auto blocks = stream.blocks();
    if (!findLostLengths(blocks, nodes, file.size())) {
        return stream;
    }
    return {file.shareSource(), stream.name(), std::move(blocks)};
}

HeavyData::HeavyData(const File& file, const Model& model)
    : HeavyData(openHeavyStream(file, model.nodes()), model) {}

HeavyData::HeavyData(StreamReader stream, const Model& model) : model_(model), stream_(std::move(stream)) {}

std::vector<float> HeavyData::readFloats(const Dataset& dataset) {
    const auto& holder = holderOf(dataset, Format::FloatTag);
    std::vector<std::uint8_t> room;
    return unshuffleFloats(viewPayload(holder, room), holder.width);
}

std::vector<std::uint32_t> HeavyData::readUnsigned(const Dataset& dataset) {
    const auto& holder = holderOf(dataset, Format::UnsignedTag);
    std::vector<std::uint8_t> room;
    return unshuffleUnsigned(viewPayload(holder, room), holder.width);
}

std::vector<std::uint8_t> HeavyData::readBytes(const Dataset& dataset) {
    std::vector<std::uint8_t> room;
    const auto payload = viewPayload(model_.resolve(dataset), room);
    return {payload.begin(), payload.end()};
}

const Dataset& HeavyData::holderOf(const Dataset& dataset, std::uint8_t elementTag) const {
    const auto& holder = model_.resolve(dataset);
    if (holder.elementTag != elementTag) {
        throw Error(ErrorCode::WrongElementType, {.record = describe(holder)});
    }
    requireWholeItems(holder);
    return holder;
}

std::span<const std::uint8_t> HeavyData::viewPayload(const Dataset& holder, std::vector<std::uint8_t>& room) {
    return inRecord(
        [&] {
            stream_.seek(holder.position);
            return stream_.view(holder.sizeInBytes, room);
        },
        [&] { return describe(holder); });
}

std::vector<NodeSet> HeavyData::readNodeSets(const NodeSets& descriptor) {
    stream_.seek(descriptor.heavyPosition);
    const auto start = stream_.place();
    const auto lists = readSetLists(stream_);
    const bool isWholePayload = stream_.position() - descriptor.heavyPosition == descriptor.heavySize;
    if (!isWholePayload || !areSound(lists, descriptor.setCount)) {
        throw Error(ErrorCode::BadNodeSets, start);
    }
    std::vector<NodeSet> sets;
    for (std::size_t i = 0; i < descriptor.setCount; ++i) {
        sets.push_back(makeSet(lists, i));
    }
    return sets;
}

} // namespace MoxReader
