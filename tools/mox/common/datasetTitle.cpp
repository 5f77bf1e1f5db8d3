#include "datasetTitle.h"

#include "stepText.h"
#include "visibleText.h"

namespace MoxTool {

std::string datasetTitle(const MoxReader::Dataset& dataset, const ModelSteps& steps) {
    const auto name = visibleText(dataset.name);
    const auto place = steps.find(dataset.step);
    return place ? name + ", " + stepsText(steps, {*place}) : name;
}

} // namespace MoxTool
