#include "displacementText.h"

#include <fmt/format.h>

#include <algorithm>

namespace MoxTool {

std::vector<const MoxReader::IndexTable*> findRestarts(const MoxReader::RawIndex& index) {
    std::vector<const MoxReader::IndexTable*> restarts;
    std::uint64_t before = 0;
    for (const auto& table : index.tables) {
        if (table.displacement != before) {
            restarts.push_back(&table);
        }
        before = table.displacement;
    }
    return restarts;
}

std::optional<std::string> displacementText(const MoxReader::RawIndex& index) {
    const auto restarts = findRestarts(index);
    if (restarts.empty()) {
        return std::nullopt;
    }
    const auto lost = std::ranges::count_if(index.blocks, &MoxReader::BlockRecord::isOverwritten);
    const auto outcome = index.damage.empty() ? fmt::format("{} blocks are lost, the rest can be read", lost)
                                              : std::string("an index table is among what is lost");
    return fmt::format(
        "saved with blocks too small: a single dataset filled the block before Index Block {}, and the "
        "writer then placed those after it over others; {}",
        *restarts.front()->blockId, outcome);
}

} // namespace MoxTool
