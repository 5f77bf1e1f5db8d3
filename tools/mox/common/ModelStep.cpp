#include "ModelStep.h"

#include "StepAttributeNames.h"
#include "attributeValue.h"
#include "numberText.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

// The text of a double takes precedence over the float beside it.
std::optional<double> preciseNumber(const MoxReader::Attributes& attributes, const std::string& key) {
    const auto exact = numberAttribute(attributes, AttributeNames::exact(key));
    return exact ? exact : numberAttribute(attributes, key);
}

} // namespace

void ModelStep::describe(const MoxReader::Dataset& dataset) {
    const auto& attributes = dataset.attributes;
    if (!time) {
        time = preciseNumber(attributes, AttributeNames::Time);
    }
    if (!frequency) {
        frequency = preciseNumber(attributes, AttributeNames::Frequency);
    }
    if (!mode) {
        mode = numberAttribute(attributes, AttributeNames::Mode);
    }
    vibration = vibration || dataset.vibration;
}

std::string ModelStep::positionText() const {
    return position() ? shortNumberText(*position()) : "";
}

std::string ModelStep::mark() const {
    return position() ? fmt::format("@{}", positionText()) : "";
}

} // namespace MoxTool
