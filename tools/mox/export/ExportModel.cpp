#include "ExportModel.h"

#include "listSkippedTreeContent.h"

namespace MoxTool {

ExportModel::ExportModel(const ExportRequest& request) : SelectedModel(request, request.shownOutput()) {
    listSkippedTreeContent(model(), ModelChoice(model(), request), summary());
}

} // namespace MoxTool
