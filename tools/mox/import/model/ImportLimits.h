#pragma once

#include "../../common/Failure.h"

#include <fmt/core.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// Ids of nodes or elements as a model keeps them.
/// @param path Of the file that they come from, for the message.
/// @throws Failure for an id that does not fit into 32 bits without sign.
template <typename Ids>
std::vector<unsigned int> narrowIds(const Ids& ids, const std::string& path) {
    constexpr auto Most = std::numeric_limits<unsigned int>::max();
    std::vector<unsigned int> narrow;
    narrow.reserve(ids.size());
    for (const auto id : ids) {
        if (!std::in_range<unsigned int>(id))
            throw Failure(path, fmt::format("has the id {}, but a model keeps ids from 0 to {}", id, Most));
        narrow.push_back(static_cast<unsigned int>(id));
    }
    return narrow;
}

} // namespace MoxTool
