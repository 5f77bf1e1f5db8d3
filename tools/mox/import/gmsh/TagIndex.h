#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace MoxTool {

/// Finds the place of a tag in a list of tags.
class TagIndex {
public:
    /// @param tags In any order. If several are equal, the first is found.
    explicit TagIndex(const std::vector<std::size_t>& tags);

    std::optional<std::size_t> find(std::size_t tag) const;

private:
    std::vector<std::pair<std::size_t, std::size_t>> places_; // sorted pairs of tag and place
};

} // namespace MoxTool
