#pragma once

#include "BlockCheck.h"
#include "FindingList.h"

#include <MoxReader/Source.h>

#include <memory>

namespace MoxTool {

/// Checks a file against all rules, and continues after damage where it can.
///
/// Takes time in proportion to the file, whatever its bytes say, and memory for its tree, its descriptors and
/// one decompressed block.
/// @throws MoxReader::Error with ReadFailed only.
void checkFile(const std::shared_ptr<MoxReader::Source>& source, FindingList& findings,
               const CheckProgress& progress);

} // namespace MoxTool
