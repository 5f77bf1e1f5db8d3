#pragma once

#include "../common/JsonStream.h"
#include "../common/ModelSteps.h"
#include "ValueRow.h"

#include <MoxReader/Model.h>

#include <cstdio>
#include <vector>

namespace MoxTool {

/// Prints one table of all rows, or one for each step if the rows are by steps.
void printValues(std::FILE* out, const std::vector<ValueRow>& rows, const ModelSteps& steps);

/// Writes an array with an object for each component of each row.
void printValues(JsonStream& out, const std::vector<ValueRow>& rows, const ModelSteps& steps,
                 const MoxReader::Model& model);

} // namespace MoxTool
