#include "requireNumbersFit.h"

#include "WorkLimit.h"
#include "readFailure.h"

#include <fmt/core.h>

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

void requireNumbersFit(const std::string& file, const MoxReader::Model& model, MoxReader::HeavyData& heavy) {
    std::uint64_t bytes = 0;
    for (const auto& node : model.nodes()) {
        bytes += claimedBytes(node);
    }
    if (bytes <= heavy.stream().size()) {
        return;
    }
    if (heavy.stream().damage()) {
        throw readFailure(file, *heavy.stream().damage());
    }
    throw Failure(file, fmt::format("its datasets claim more numbers than it holds; mox check lists all "
                                    "damage, {} goes on all the same",
                                    WorkLimit::Option));
}

} // namespace MoxTool
