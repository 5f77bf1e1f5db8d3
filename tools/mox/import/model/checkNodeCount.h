#pragma once

#include "../../common/Failure.h"

#include <fmt/core.h>

#include <cstdint>
#include <limits>
#include <string>

namespace MoxTool {

/// @param path Of the file that has the nodes, for the message.
/// @throws Failure if there are more nodes than a model can have.
inline void checkNodeCount(std::uint64_t count, const std::string& path) {
    constexpr std::uint64_t Most = std::numeric_limits<std::int32_t>::max();
    if (count > Most)
        throw Failure(path, fmt::format("has {} nodes, but a model can have {} at most", count, Most));
}

} // namespace MoxTool
