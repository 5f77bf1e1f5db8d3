#pragma once

#include "../../common/Failure.h"

#include <fmt/core.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// Refuses what a file of another format can have but a model can't hold.
class ImportLimits {
public:
    /// @param path The path of the file that is imported, for messages.
    explicit ImportLimits(std::string path) : path_(std::move(path)) {}

    /// @throws Failure if there are more nodes than a model can have.
    void checkNodeCount(std::uint64_t count) const;

    /// Ids of nodes or elements as a model keeps them.
    /// @throws Failure for an id that does not fit into 32 bits unsigned.
    template <typename Ids>
    std::vector<unsigned int> narrowIds(const Ids& ids) const {
        constexpr auto Most = std::numeric_limits<unsigned int>::max();
        std::vector<unsigned int> narrow;
        narrow.reserve(ids.size());
        for (const auto id : ids) {
            if (!std::in_range<unsigned int>(id)) {
                throw Failure(path_,
                              fmt::format("has the id {}, but a model keeps ids from 0 to {}", id, Most));
            }
            narrow.push_back(static_cast<unsigned int>(id));
        }
        return narrow;
    }

    /// @param name What the message calls the dataset.
    /// @throws std::length_error for a dataset of 4 GiB or more.
    static void checkDatasetSize(std::size_t values, const std::string& name);

private:
    std::string path_;
};

} // namespace MoxTool
