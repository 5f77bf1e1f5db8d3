#include "ChosenSteps.h"

#include "../../common/StepChoice.h"

#include <utility>

namespace MoxTool {

ChosenSteps::ChosenSteps(std::string path, std::vector<std::string> choices)
    : path_(std::move(path)), choices_(std::move(choices)) {}

void ChosenSteps::resolve(const ModelSteps& steps) {
    for (const auto& choice : choices_) {
        const auto places = StepChoice{choice}.resolve(steps, path_);
        places_.insert(places.begin(), places.end());
    }
}

bool ChosenSteps::takes(std::size_t place) const {
    return choices_.empty() || places_.contains(place);
}

} // namespace MoxTool
