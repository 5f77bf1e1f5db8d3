#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace MoxTool {

/// One thing of two lists, or of one of them: places in the lists, from 0.
struct Match {
    std::optional<std::size_t> a;
    std::optional<std::size_t> b;
};

/// Pairs what has the same key in two lists: the first of a key with the first, the second with the second
/// and so on.
/// @return all of a in their order, each with its partner if it has one; then what is left of b in its order.
std::vector<Match> matchInOrder(const std::vector<std::string_view>& a,
                                const std::vector<std::string_view>& b);

} // namespace MoxTool
