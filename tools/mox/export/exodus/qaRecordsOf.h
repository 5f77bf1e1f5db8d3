#pragma once

#include "../../exodus/QaRecord.h"

#include <MoxReader/Attributes.h>

#include <vector>

namespace MoxTool {

/// The records of the programs that worked on a model before, by the attributes "QA Record 1" and so on that
/// an import gives the root. The first is told more exactly by "Source Program" and the like.
std::vector<QaRecord> qaRecordsOf(const MoxReader::Attributes& root);

} // namespace MoxTool
