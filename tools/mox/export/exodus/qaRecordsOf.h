#pragma once

#include "../../exodus/QaRecord.h"
#include "CutTexts.h"

#include <MoxReader/Attributes.h>

#include <vector>

namespace MoxTool {

/// The records of the programs that worked on a model before, from the attributes "QA Record 1" and so on
/// that an import gives the root. "Source Program" and the like give the first one more exactly.
/// @param cutTexts Learns of texts that are too long for a record.
std::vector<QaRecord> qaRecordsOf(const MoxReader::Attributes& root, CutTexts& cutTexts);

} // namespace MoxTool
