#pragma once

#include "../mesh/SelectedModel.h"
#include "ExportRequest.h"

namespace MoxTool {

/// A saved model as an export needs it. The summary lists as well what of the tree no export takes.
class ExportModel : public SelectedModel {
public:
    /// @throws Failure if the file can't be read, contradicts itself, has no mesh or lacks the wanted step.
    explicit ExportModel(const ExportRequest& request);
};

} // namespace MoxTool
