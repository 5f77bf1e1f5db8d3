#include "titleByStepName.h"

#include "../common/visibleText.h"

#include <fmt/format.h>

namespace MoxTool {

std::string titleByStepName(const MoxReader::Dataset& dataset) {
    const auto name = visibleText(dataset.name);
    return dataset.step.empty() ? name : fmt::format("{}, step \"{}\"", name, visibleText(dataset.step));
}

} // namespace MoxTool
