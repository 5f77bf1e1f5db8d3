#include "ExportModel.h"

#include "../common/StepFilter.h"
#include "../common/visibleText.h"
#include "ExportChoice.h"
#include "MeshCollector.h"
#include "ResultCollector.h"
#include "listSkippedTreeContent.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

ExportModel::ExportModel(const ExportRequest& request)
    : opened_(request.input),
      heavy_(opened_.file(), opened_.model()),
      conversion_(request.shownOutput()),
      limit_(request.input, opened_.file().size(), request.noLimit) {
    explainErrors(request.input, [&] { read(request); });
}

void ExportModel::read(const ExportRequest& request) {
    const ExportChoice choice(model(), request);
    parts_ = MeshCollector(request.input, model(), choice, heavy_, conversion_, limit_).collect();
    meshBytes_ = limit_.total();
    if (parts_.parts.empty()) {
        throw Failure(request.input,
                      std::string(request.parts.empty() ? "has" : "these parts have") +
                          " no geometry with Coordinates, Connectivity and Polylength to export");
    }
    choice.requireMatches(model());
    contents_ = ResultCollector(model(), choice, parts_, conversion_).collect();
    listSkippedTreeContent(model(), choice, conversion_);
    chooseSteps(request);
    limitResults();
    conversion_.shapes = static_cast<std::int64_t>(parts_.parts.size());
    conversion_.nodes = static_cast<std::int64_t>(parts_.nodeCount());
    conversion_.elements = static_cast<std::int64_t>(parts_.elementCount());
    conversion_.steps = static_cast<std::int64_t>(wanted_.size());
}

void ExportModel::chooseSteps(const ExportRequest& request) {
    const StepFilter filter(request.step, model(), request.input);
    const auto& names = filter.names();
    for (std::size_t step = 0; step < contents_.steps.size(); ++step) {
        if (names.empty() || names.contains(contents_.steps[step].name)) {
            wanted_.push_back(step);
        }
    }
    if (request.step.isMade() && wanted_.empty()) {
        throw Failure(request.input, fmt::format("has no results on nodes or elements in step \"{}\"",
                                                 visibleText(request.step.text)));
    }
}

// Each result is written for all nodes or elements, in each wanted step that has it for some.
void ExportModel::limitResults() {
    const auto times = std::max<std::size_t>(wanted_.size(), 1);
    for (const auto& field : contents_.fields) {
        const auto items = field.place == ResultPlace::Nodes ? parts_.nodeCount() : parts_.elementCount();
        const std::uint64_t bytes = std::uint64_t{4} * field.width * items;
        if (field.isStatic) {
            limit_.add(bytes, times);
            continue;
        }
        std::size_t last = ExportField::NoStep;
        for (const auto& [source, holder] : field.sources) {
            const auto step = source.first;
            if (step != last && isWanted(step)) {
                limit_.add(bytes);
            }
            last = step;
        }
    }
}

bool ExportModel::isWanted(std::size_t step) const {
    return std::binary_search(wanted_.begin(), wanted_.end(), step);
}

} // namespace MoxTool
