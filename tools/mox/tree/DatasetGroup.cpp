#include "DatasetGroup.h"

namespace MoxTool {

std::vector<std::size_t> DatasetGroup::places(const ModelSteps& steps) const {
    std::vector<std::size_t> places;
    for (const auto* member : members) {
        if (const auto place = steps.find(member->step)) {
            places.push_back(*place);
        }
    }
    return places;
}

} // namespace MoxTool
