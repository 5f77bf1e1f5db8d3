#pragma once

#include <cstdint>

/// The shapes of the works, which every program saves alike.
namespace Workloads {

/// The shapes of the work "small".
inline constexpr std::uint64_t SmallShapes = 100;

/// The work "blocks": two arrays fill a block.
inline constexpr const char* TinyBlockSize = "4000";
inline constexpr std::uint64_t ArraysInTinyBlock = 2;
inline constexpr std::uint64_t ValuesOfTinyArray = 500;

} // namespace Workloads
