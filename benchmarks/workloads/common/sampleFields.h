#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Workloads {

/// The columns of the fields of the large works, and their rows, which take 4 MiB.
inline constexpr std::size_t FieldColumns = 3;
inline constexpr std::size_t FieldRows = 1024 * 1024 / FieldColumns;
/// The fields that a large work repeats: 16 MiB, many times what zlib looks back at.
inline constexpr std::size_t FieldCount = 4;

/// The fields of 4 MiB of which `mebibytes` consist.
constexpr std::uint64_t fieldsIn(std::uint64_t mebibytes) {
    return (mebibytes + 3) / 4;
}

/// A displacement field as a solver gives it: a sum of a few waves over the nodes of a solid, row-major, whose
/// last bits are noise. `number` makes it another one.
std::vector<float> sampleField(std::size_t rows, std::size_t columns, std::size_t number);

/// The fields that the work "bulk" repeats.
std::vector<std::vector<float>> bulkFields();

/// Writes the array of the work "array", which takes fieldsIn(mebibytes) times the rows of a field.
void fillLongArray(std::uint64_t mebibytes, float* target);

/// The arrays of a small work: few numbers each, and too many for zlib to look back at all of them.
inline constexpr std::size_t SmallArrayValues = 100;
inline constexpr std::size_t SmallArrayCount = 1000;
std::vector<std::vector<float>> smallArrays();

} // namespace Workloads
