#pragma once

#include "common/Stopwatch.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Workloads {

/// Something that a program saves and measures.
struct Work {
    const char* name;
    /// What a size counts.
    const char* unit;
    void (*run)(std::uint64_t size, const std::string& path, Stopwatch& watch);
};

/// What the program that this is linked into can save.
const std::vector<Work>& works();

} // namespace Workloads
