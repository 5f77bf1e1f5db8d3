#include "ExportModel.h"

#include "../common/visibleText.h"
#include "ExportChoice.h"
#include "MeshCollector.h"
#include "ResultCollector.h"
#include "listSkippedTreeContent.h"

#include <fmt/core.h>

namespace MoxTool {

ExportModel::ExportModel(const ExportRequest& request)
    : opened_(request.input), heavy_(opened_.file(), opened_.model()), conversion_(request.shownOutput()) {
    explainErrors(request.input, [&] { read(request); });
}

void ExportModel::read(const ExportRequest& request) {
    const ExportChoice choice(model(), request);
    parts_ = MeshCollector(request.input, model(), choice, heavy_, conversion_).collect();
    if (parts_.parts.empty()) {
        throw Failure(request.input,
                      std::string(request.parts.empty() ? "has" : "these parts have") +
                          " no geometry with Coordinates, Connectivity and Polylength to export");
    }
    choice.requireMatches(model());
    contents_ = ResultCollector(model(), choice, parts_, conversion_).collect();
    listSkippedTreeContent(model(), choice, conversion_);
    chooseSteps(request);
    conversion_.shapes = static_cast<std::int64_t>(parts_.parts.size());
    conversion_.nodes = static_cast<std::int64_t>(parts_.nodeCount());
    conversion_.elements = static_cast<std::int64_t>(parts_.elementCount());
    conversion_.steps = static_cast<std::int64_t>(wanted_.size());
}

void ExportModel::chooseSteps(const ExportRequest& request) {
    for (std::size_t step = 0; step < contents_.steps.size(); ++step) {
        if (request.step.empty() || contents_.steps[step].name == request.step) {
            wanted_.push_back(step);
        }
    }
    if (!request.step.empty() && wanted_.empty()) {
        throw Failure(request.input,
                      fmt::format("has no step \"{}\"; mox tree lists its steps", visibleText(request.step)));
    }
}

} // namespace MoxTool
