#include "groupDatasets.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace MoxTool {

using MoxReader::Dataset;

std::vector<DatasetGroup> groupDatasets(const std::vector<const Dataset*>& datasets, const ModelSteps& steps,
                                        const std::function<NumbersText(const Dataset&)>& numbersOf) {
    std::vector<DatasetGroup> groups;
    std::map<std::tuple<std::string, std::uint32_t, NumbersText>, std::size_t> places;
    for (const auto* dataset : datasets) {
        auto numbers = numbersOf(*dataset);
        if (!dataset->step.empty()) {
            const auto [place, isNew] =
                places.try_emplace({dataset->name, dataset->variableType, numbers}, groups.size());
            if (!isNew) {
                groups[place->second].members.push_back(dataset);
                continue;
            }
        }
        groups.push_back({{dataset}, std::move(numbers)});
    }
    for (auto& group : groups) {
        std::ranges::stable_sort(group.members, {},
                                 [&](const Dataset* each) { return steps.find(each->step); });
    }
    return groups;
}

} // namespace MoxTool
