#include "NumberFile.h"

#include <MoxReader/Format.h>

namespace MoxTool {

namespace {

std::uint64_t claimedBytes(const MoxReader::Node& node) {
    if (const auto* sets = node.nodeSets()) {
        return sets->heavySize;
    }
    std::uint64_t bytes = 0;
    if (const auto* geometry = node.geometry()) {
        for (const auto& dataset : geometry->datasets) {
            bytes += dataset.sizeInBytes;
        }
    }
    return bytes;
}

} // namespace

NumberFile::NumberFile(const std::string& name)
    : name_(name), opened_(name), heavy_(opened_.file(), opened_.model()) {
    requireNumbersFit();
}

void NumberFile::requireNumbersFit() {
    std::uint64_t bytes = 0;
    for (const auto& node : model().nodes()) {
        bytes += claimedBytes(node);
    }
    if (bytes <= heavy_.stream().size()) {
        return;
    }
    if (heavy_.stream().damage()) {
        throw readFailure(name_, *heavy_.stream().damage());
    }
    throw Failure(name_, "its datasets claim more numbers than it holds; mox check lists all damage");
}

const MoxReader::Dataset& NumberFile::holder(const MoxReader::Dataset& dataset) const {
    return *explainErrors(name_, [&] { return &model().resolve(dataset); });
}

Numbers NumberFile::read(const MoxReader::Dataset& dataset) {
    return explainErrors(name_, [&]() -> Numbers {
        if (model().resolve(dataset).elementTag == MoxReader::Format::UnsignedTag) {
            return heavy_.readUnsigned(dataset);
        }
        return heavy_.readFloats(dataset);
    });
}

std::vector<MoxReader::NodeSet> NumberFile::readSets(const MoxReader::NodeSets& descriptor) {
    return explainErrors(name_, [&] { return heavy_.readNodeSets(descriptor); });
}

} // namespace MoxTool
