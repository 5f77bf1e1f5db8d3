#pragma once

#include <cstddef>

namespace Workloads::Floor {

/// Writes a table, which is row-major, column by column, each as four planes of bytes.
void shuffle(const float* values, std::size_t rows, std::size_t columns, unsigned char* target);

} // namespace Workloads::Floor
