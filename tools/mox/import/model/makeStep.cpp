#include "makeStep.h"

#include "../../mesh/AttributeNames.h"

#include <fmt/core.h>

#include <cmath>

namespace MoxTool {

namespace {

void setReal(Qel::Mox2::Attributes& attributes, const std::string& key, double value) {
    attributes.set(key, static_cast<float>(value));
    attributes.set(AttributeNames::exact(key), fmt::format("{}", value));
}

} // namespace

Qel::Mox2::Step makeStep(std::size_t index, double time, const std::optional<Mode>& mode) {
    Qel::Mox2::Step step;
    step.name = fmt::format("Step {}", index + 1);
    setReal(step.attributes, AttributeNames::Time, time);
    if (mode) {
        step.attributes.set(AttributeNames::Category, "Vibration");
        step.attributes.set(AttributeNames::Mode, static_cast<int>(std::lround(mode->number)));
        setReal(step.attributes, AttributeNames::Frequency, mode->frequency);
    }
    return step;
}

} // namespace MoxTool
