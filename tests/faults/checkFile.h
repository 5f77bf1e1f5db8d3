#pragma once

#include <string>

namespace Faults {

enum class CheckResult { Whole, Damaged, Failed };

/// What `mox check` says of a file.
CheckResult checkFile(const std::string& path);

/// How many blocks `mox salvage` gets back from a file.
/// @param workFolder Where it puts them; replaced.
unsigned int salvagedBlocks(const std::string& path, const std::string& workFolder);

} // namespace Faults
