#pragma once

#include "../common/NumberFile.h"
#include "DatasetChoice.h"

namespace MoxTool {

/// The chosen dataset of a file, valid as long as the file's model; the first if a geometry has several of
/// one name and step.
/// @throws Failure if there is no such node or dataset, with a list of what there is instead.
const MoxReader::Dataset& findDataset(const NumberFile& file, const DatasetChoice& choice);

} // namespace MoxTool
