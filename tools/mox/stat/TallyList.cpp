#include "TallyList.h"

#include <algorithm>
#include <cmath>

namespace MoxTool {

void TallyList::add(const std::string& name, const Tally& tally) {
    const auto [place, isNew] = places_.try_emplace(name, list_.size());
    if (isNew) {
        list_.emplace_back(name, Tally{});
    }
    list_[place->second].second += tally;
}

Tally TallyList::sum() const {
    Tally total;
    for (const auto& row : list_) {
        total += row.second;
    }
    return total;
}

TallyList TallyList::sorted() const {
    auto rows = list_;
    std::ranges::sort(rows, {},
                      [](const Row& row) { return std::pair(-std::llround(row.second.stored), row.first); });
    TallyList result;
    for (const auto& [name, tally] : rows) {
        result.add(name, tally);
    }
    return result;
}

} // namespace MoxTool
