#pragma once

#include "StoredModel.h"

#include <MoxReader/Model.h>

namespace MoxTool {

/// Who saved a model, without the date of its last save.
SavedBy savedBy(const MoxReader::Model& model);

} // namespace MoxTool
