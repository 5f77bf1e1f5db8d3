#include "requireNumbersFit.h"

#include "WorkLimit.h"
#include "readFailure.h"

#include <fmt/core.h>

namespace MoxTool {

namespace {

/// @param counts Called with the position and the size of what a dataset or a node claims; whether that counts.
template <typename Counts>
std::uint64_t claimedBytes(const MoxReader::Model& model, Counts counts) {
    std::uint64_t bytes = 0;
    const auto add = [&](std::uint64_t position, std::uint64_t size) {
        bytes += counts(position, size) ? size : 0;
    };
    for (const auto& node : model.nodes()) {
        if (const auto* sets = node.nodeSets()) {
            add(sets->heavyPosition, sets->heavySize);
        }
        if (const auto* geometry = node.geometry()) {
            for (const auto& dataset : geometry->datasets) {
                add(dataset.position, dataset.sizeInBytes);
            }
        }
    }
    return bytes;
}

Failure claimsTooMuch(const std::string& file) {
    return Failure(file, fmt::format("its datasets claim more numbers than it holds; mox check lists all "
                                     "damage, {} goes on all the same",
                                     WorkLimit::Option));
}

} // namespace

void requireNumbersFit(const std::string& file, const MoxReader::Model& model, MoxReader::HeavyData& heavy) {
    if (claimedBytes(model, [](auto, auto) { return true; }) <= heavy.stream().size()) {
        return;
    }
    if (heavy.stream().damage()) {
        throw readFailure(file, *heavy.stream().damage());
    }
    throw claimsTooMuch(file);
}

void requireReadableNumbersFit(const std::string& file, const MoxReader::File& opened,
                               const MoxReader::Model& model) {
    const auto held = MoxReader::openHeavyStream(opened, model.nodes()).size();
    const auto bytes = claimedBytes(model, [&](std::uint64_t position, std::uint64_t size) {
        return size <= held && position <= held - size;
    });
    if (!WorkLimit(file, opened.size(), false, held).allows(bytes)) {
        throw claimsTooMuch(file);
    }
}

} // namespace MoxTool
