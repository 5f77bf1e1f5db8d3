#include "SelectedModel.h"

#include "../common/StepFilter.h"
#include "../common/visibleText.h"
#include "MeshCollector.h"
#include "ModelChoice.h"
#include "ResultCollector.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

SelectedModel::SelectedModel(const ModelSelection& selection, const std::string& output)
    : opened_(selection.input),
      heavy_(opened_.file(), opened_.model()),
      conversion_(output),
      limit_(selection.input, opened_.file().size(), selection.noLimit) {
    explainErrors(selection.input, [&] { read(selection); });
}

void SelectedModel::read(const ModelSelection& selection) {
    const ModelChoice choice(model(), selection);
    parts_ = MeshCollector(selection.input, model(), choice, heavy_, conversion_, limit_).collect();
    meshBytes_ = limit_.total();
    if (parts_.parts.empty()) {
        throw Failure(selection.input, std::string(selection.parts.empty() ? "has" : "these parts have") +
                                           " no geometry with Coordinates, Connectivity and Polylength");
    }
    choice.requireMatches(model());
    contents_ = ResultCollector(model(), choice, parts_, conversion_).collect();
    chooseSteps(selection);
    limitResults();
    conversion_.shapes = static_cast<std::int64_t>(parts_.parts.size());
    conversion_.nodes = static_cast<std::int64_t>(parts_.nodeCount());
    conversion_.elements = static_cast<std::int64_t>(parts_.elementCount());
    conversion_.steps = static_cast<std::int64_t>(wanted_.size());
}

void SelectedModel::chooseSteps(const ModelSelection& selection) {
    const StepFilter filter(selection.step, model(), selection.input);
    const auto& names = filter.names();
    for (std::size_t step = 0; step < contents_.steps.size(); ++step) {
        if (names.empty() || names.contains(contents_.steps[step].name)) {
            wanted_.push_back(step);
        }
    }
    if (selection.step.isMade() && wanted_.empty()) {
        throw Failure(selection.input, fmt::format("has no results on nodes or elements in step \"{}\"",
                                                   visibleText(selection.step.text)));
    }
}

// Each result is written for all nodes or elements, in each wanted step that has it for some.
void SelectedModel::limitResults() {
    const auto times = std::max<std::size_t>(wanted_.size(), 1);
    for (const auto& field : contents_.fields) {
        const auto items = field.place == ResultPlace::Nodes ? parts_.nodeCount() : parts_.elementCount();
        const std::uint64_t bytes = std::uint64_t{4} * field.width * items;
        if (field.isStatic) {
            limit_.add(bytes, times);
            continue;
        }
        std::size_t last = ResultField::NoStep;
        for (const auto& [source, holder] : field.sources) {
            const auto step = source.first;
            if (step != last && isWanted(step)) {
                limit_.add(bytes);
            }
            last = step;
        }
    }
}

bool SelectedModel::isWanted(std::size_t step) const {
    return std::binary_search(wanted_.begin(), wanted_.end(), step);
}

} // namespace MoxTool
