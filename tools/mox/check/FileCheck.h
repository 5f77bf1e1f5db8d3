#pragma once

#include "BlockCheck.h"
#include "FindingList.h"

#include <MoxReader/Source.h>

#include <memory>

namespace MoxTool {

/// Goes by all rules through a file, and on behind damage where it can.
///
/// Takes time in proportion to the file, whatever its bytes say, and memory for its tree, its descriptors and
/// one decompressed block.
/// @throws MoxReader::Error ReadFailed alone.
void checkFile(const std::shared_ptr<MoxReader::Source>& source, FindingList& findings,
               const CheckProgress& progress);

} // namespace MoxTool
