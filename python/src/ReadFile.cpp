#include "ReadFile.h"

#include <MoxReader/BlockContent.h>
#include <MoxReader/Error.h>
#include <MoxReader/Format.h>

namespace MoxPython {

using MoxReader::Dataset;
using MoxReader::Error;
using MoxReader::ErrorCode;

namespace {

const Dataset& datasetAt(const MoxReader::Model& model, std::uint32_t node, std::uint32_t index) {
    const auto* const geometry = model.node(node).geometry();
    if (geometry == nullptr || index >= geometry->datasets.size()) {
        throw Error(ErrorCode::NoSuchNode);
    }
    return geometry->datasets[index];
}

} // namespace

ReadFile::ReadFile(const std::string& path)
    : file_(path), model_(MoxReader::readModel(file_)), heavy_(file_, model_) {}

const Dataset* ReadFile::holderOf(const Dataset& dataset) const {
    try {
        return &model_.resolve(dataset);
    } catch (const Error&) {
        return nullptr;
    }
}

ReadNumbers ReadFile::read(std::uint32_t node, std::uint32_t index) {
    const auto& dataset = datasetAt(model_, node, index);
    const auto& holder = model_.resolve(dataset);
    const std::lock_guard turn(turn_);
    if (holder.elementTag == MoxReader::Format::UnsignedTag) {
        return {heavy_.readUnsigned(dataset), holder.width};
    }
    return {heavy_.readFloats(dataset), holder.width};
}

std::vector<MoxReader::NodeSet> ReadFile::readNodeSets(std::uint32_t node) {
    const auto* const sets = model_.node(node).nodeSets();
    if (sets == nullptr) {
        return {};
    }
    const std::lock_guard turn(turn_);
    return heavy_.readNodeSets(*sets);
}

void requireWhole(const std::string& path) {
    const MoxReader::File file(path);
    if (file.index().isDisplaced()) {
        throw Error(ErrorCode::BlockOverwritten, {.path = path});
    }
    for (const auto& block : file.blocks()) {
        if (const auto damage = MoxReader::findLengthDamage(block, file.size())) {
            throw Error(*damage, {.path = path, .blockId = block.id, .name = block.name});
        }
    }
}

} // namespace MoxPython
