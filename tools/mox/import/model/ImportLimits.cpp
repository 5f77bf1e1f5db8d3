#include "ImportLimits.h"

#include "../../common/visibleText.h"

#include <stdexcept>

namespace MoxTool {

void ImportLimits::checkNodeCount(std::uint64_t count) const {
    constexpr std::uint64_t Most = std::numeric_limits<std::int32_t>::max();
    if (count > Most) {
        throw Failure(path_, fmt::format("has {} nodes, but a model can have {} at most", count, Most));
    }
}

// The format keeps the size of a dataset in 32 bits.
void ImportLimits::checkDatasetSize(std::size_t values, const std::string& name) {
    if (values > UINT32_MAX / sizeof(float)) {
        throw std::length_error(
            fmt::format("{} has {} numbers and a dataset must be below 4 GiB", visibleText(name), values));
    }
}

} // namespace MoxTool
