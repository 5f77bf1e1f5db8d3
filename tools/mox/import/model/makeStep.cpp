#include "makeStep.h"

#include "../../mesh/AttributeNames.h"

#include <fmt/core.h>

#include <cmath>
#include <utility>

namespace MoxTool {

namespace {

void setReal(Qel::Mox2::Attributes& attributes, const std::string& key, double value) {
    attributes.set(key, static_cast<float>(value));
    attributes.set(AttributeNames::exact(key), fmt::format("{}", value));
}

std::string nameOf(std::size_t index) {
    return fmt::format("Step {}", index + 1);
}

} // namespace

Qel::Mox2::Step makeStep(std::size_t index, double time, const std::optional<Mode>& mode) {
    Qel::Mox2::Step step;
    step.name = nameOf(index);
    setReal(step.attributes, AttributeNames::Time, time);
    if (mode) {
        step.attributes.set(AttributeNames::Category, "Vibration");
        step.attributes.set(AttributeNames::Mode, static_cast<int>(std::lround(mode->number)));
        setReal(step.attributes, AttributeNames::Frequency, mode->frequency);
    }
    return step;
}

ModelSteps stepsAt(const std::vector<double>& times) {
    std::vector<ModelStep> steps;
    for (const double time : times) {
        ModelStep step;
        step.name = nameOf(steps.size());
        step.time = time;
        steps.push_back(step);
    }
    return ModelSteps(std::move(steps));
}

} // namespace MoxTool
