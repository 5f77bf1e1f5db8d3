#pragma once

#include "../common/NumberFile.h"
#include "DatasetChoice.h"

namespace MoxTool {

/// The chosen dataset of a file, as long as the file's model; the first if a geometry has several of one name
/// and step.
/// @throws Failure which tells what there is instead, if there is no such node or dataset.
const MoxReader::Dataset& findDataset(const NumberFile& file, const DatasetChoice& choice);

} // namespace MoxTool
