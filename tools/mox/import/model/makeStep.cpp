#include "makeStep.h"

#include "../../common/lowerCase.h"
#include "../../mesh/AttributeNames.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace MoxTool {

namespace {

std::string plainName(const std::string& name) {
    auto plain = lowerCase(name);
    std::erase(plain, '_');
    return plain;
}

std::optional<std::size_t> findNamed(const std::vector<std::string>& names,
                                     const std::set<std::string>& wanted) {
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&wanted](const auto& name) { return wanted.contains(plainName(name)); });
    if (found == names.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

void setReal(Qel::Mox2::Attributes& attributes, const std::string& key, double value) {
    attributes.set(key, static_cast<float>(value));
    attributes.set(AttributeNames::exact(key), fmt::format("{}", value));
}

} // namespace

std::optional<ModeVariables> findModeVariables(const std::vector<std::string>& globalVariables) {
    const auto number = findNamed(globalVariables, {"modenumber", "mode"});
    const auto frequency = findNamed(globalVariables, {"eigenfrequency", "naturalfrequency", "frequency"});
    if (!number || !frequency)
        return std::nullopt;
    return ModeVariables{*number, *frequency};
}

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
