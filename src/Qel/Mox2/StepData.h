#pragma once

#include <Qel/Mox2/AttributeMap.h>

#include <string>

namespace Qel::Mox2 {

/// A step as the library keeps it.
struct StepData {
    StepData() = default;
    StepData(const std::string& stepName, const AttributeMap& stepAttributes)
        : name(stepName), attributes(stepAttributes) {}

    std::string name;
    AttributeMap attributes;
};

} // namespace Qel::Mox2
