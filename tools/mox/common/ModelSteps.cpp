#include "ModelSteps.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace MoxTool {

namespace {

constexpr auto Unknown = std::numeric_limits<std::uint64_t>::max();

struct FoundStep {
    ModelStep step;
    std::uint64_t position = Unknown; // of its first numbers
};

// A step of links alone has no numbers of its own; it stands after the one that was found before it.
void placeStepsOfLinks(std::vector<FoundStep>& found) {
    std::uint64_t last = 0;
    for (auto& each : found) {
        each.position = each.position == Unknown ? last : each.position;
        last = each.position;
    }
}

} // namespace

// Arrays are stored in the order in which they were written, while a geometry can lack the first steps.
ModelSteps::ModelSteps(const MoxReader::Model& model) {
    std::vector<FoundStep> found;
    for (const auto& node : model.nodes()) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            if (dataset.step.empty()) {
                continue;
            }
            const auto [place, isNew] = places_.try_emplace(dataset.step, found.size());
            if (isNew) {
                found.push_back({{dataset.step, {}, {}, {}, false}, Unknown});
            }
            auto& each = found[place->second];
            each.step.describe(dataset);
            if (!dataset.isLink) {
                each.position = std::min(each.position, dataset.position);
            }
        }
    }
    placeStepsOfLinks(found);
    std::ranges::stable_sort(found, {}, &FoundStep::position);
    for (auto& each : found) {
        places_[each.step.name] = steps_.size();
        steps_.push_back(std::move(each.step));
    }
}

ModelSteps::ModelSteps(std::vector<ModelStep> steps) : steps_(std::move(steps)) {
    for (std::size_t place = 0; place < steps_.size(); ++place) {
        places_[steps_[place].name] = place;
    }
}

std::optional<std::size_t> ModelSteps::find(const std::string& name) const {
    const auto found = places_.find(name);
    return found == places_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace MoxTool
