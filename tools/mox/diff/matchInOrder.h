#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace MoxTool {

/// An item of two lists, or of one of them: its places in the lists, from 0.
struct Match {
    std::optional<std::size_t> a;
    std::optional<std::size_t> b;
};

/// Pairs what has the same key in two lists: the first of a key with the first, the second with the second
/// and so on.
/// @return all items of a in order, each with its partner if it has one; then the rest of b in order.
std::vector<Match> matchInOrder(const std::vector<std::string_view>& a,
                                const std::vector<std::string_view>& b);

} // namespace MoxTool
