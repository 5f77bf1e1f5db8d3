#include "ExportModel.h"

#include "../common/visibleText.h"
#include "MeshCollector.h"
#include "ResultCollector.h"
#include "listSkippedTreeContent.h"

#include <fmt/core.h>

namespace MoxTool {

ExportModel::ExportModel(const ExportRequest& request)
    : opened(request.input), heavy(opened.file(), opened.model()), conversion(request.output) {
    explainErrors(request.input, [&] { read(request); });
}

void ExportModel::read(const ExportRequest& request) {
    parts = MeshCollector(request.input, model(), heavy, conversion).collect();
    if (parts.parts.empty()) {
        throw Failure(request.input,
                      "has no geometry with Coordinates, Connectivity and Polylength to export");
    }
    contents = ResultCollector(model(), parts, conversion).collect();
    listSkippedTreeContent(model(), conversion);
    chooseSteps(request);
    conversion.shapes = static_cast<std::int64_t>(parts.parts.size());
    conversion.nodes = static_cast<std::int64_t>(parts.nodeCount());
    conversion.elements = static_cast<std::int64_t>(parts.elementCount());
    conversion.steps = static_cast<std::int64_t>(wanted.size());
}

void ExportModel::chooseSteps(const ExportRequest& request) {
    for (std::size_t step = 0; step < contents.steps.size(); ++step) {
        if (request.step.empty() || contents.steps[step].name == request.step) {
            wanted.push_back(step);
        }
    }
    if (!request.step.empty() && wanted.empty()) {
        throw Failure(request.input,
                      fmt::format("has no step \"{}\"; mox tree lists its steps", visibleText(request.step)));
    }
}

} // namespace MoxTool
