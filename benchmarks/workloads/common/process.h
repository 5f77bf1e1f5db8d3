#pragma once

#include "common/Stopwatch.h"

#include <cstdint>

/// What the system knows of this process.
namespace Workloads {

/// From an arbitrary moment (wall) and from the start of the process (all others) to now.
Usage usageOfProcess();

/// The most memory that the process has had at a time, in KiB.
std::uint64_t peakMemory();

/// Sets an environment variable for this process.
void setVariable(const char* name, const char* value);

} // namespace Workloads
