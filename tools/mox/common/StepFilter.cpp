#include "StepFilter.h"

namespace MoxTool {

StepFilter::StepFilter(const StepChoice& choice, const MoxReader::Model& model, const std::string& path) {
    if (!choice.isMade()) {
        return;
    }
    const ModelSteps steps(model);
    for (const auto place : choice.resolve(steps, path)) {
        names_.insert(steps.all()[place].name);
    }
}

bool StepFilter::takes(const MoxReader::Dataset& dataset) const {
    return names_.empty() || names_.contains(dataset.step);
}

} // namespace MoxTool
