#include "ExportModel.h"

#include "../common/StepFilter.h"
#include "../common/visibleText.h"
#include "MeshCollector.h"
#include "ResultCollector.h"
#include "listSkippedTreeContent.h"

#include <fmt/core.h>

namespace MoxTool {

ExportModel::ExportModel(const ExportRequest& request)
    : opened_(request.input), heavy_(opened_.file(), opened_.model()), conversion_(request.output) {
    explainErrors(request.input, [&] { read(request); });
}

void ExportModel::read(const ExportRequest& request) {
    parts_ = MeshCollector(request.input, model(), heavy_, conversion_).collect();
    if (parts_.parts.empty()) {
        throw Failure(request.input,
                      "has no geometry with Coordinates, Connectivity and Polylength to export");
    }
    contents_ = ResultCollector(model(), parts_, conversion_).collect();
    listSkippedTreeContent(model(), conversion_);
    chooseSteps(request);
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

} // namespace MoxTool
