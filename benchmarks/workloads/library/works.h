#pragma once

#include "common/Stopwatch.h"

#include <cstdint>
#include <string>

/// What the library saves, each in a source of its own.
namespace Workloads::Library {

/// Fields of 4 MiB of one shape, one for each step.
void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch);
/// One array.
void saveArray(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch);
/// Groups below the root, each with a shape, which has a geometry.
void saveTree(std::uint64_t shapes, const std::string& path, Stopwatch& watch);
/// Paths of shapes below the root, merged twice.
void mergeFlat(std::uint64_t paths, const std::string& path, Stopwatch& watch);
/// Paths of shapes below five levels of groups of ten, merged twice.
void mergeDeep(std::uint64_t paths, const std::string& path, Stopwatch& watch);
/// Datasets of 100 numbers of 100 shapes, one for each step.
void saveSmall(std::uint64_t datasets, const std::string& path, Stopwatch& watch);
/// The same, with steps that have a time.
void saveSmallTimed(std::uint64_t datasets, const std::string& path, Stopwatch& watch);
/// Datasets of 100 numbers of one shape, one for each step.
void saveKeys(std::uint64_t datasets, const std::string& path, Stopwatch& watch);
/// Blocks of 4,000 bytes, which two arrays fill.
void saveBlocks(std::uint64_t blocks, const std::string& path, Stopwatch& watch);

} // namespace Workloads::Library
