#include "floor/shuffle.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Workloads::Floor {

void shuffle(const float* values, std::size_t rows, std::size_t columns, unsigned char* target) {
    // Few enough rows that all columns find them in the cache.
    constexpr std::size_t tileRows = 1024;
    for (std::size_t first = 0; first < rows; first += tileRows) {
        const std::size_t end = std::min(rows, first + tileRows);
        for (std::size_t column = 0; column < columns; ++column) {
            unsigned char* const planes = target + column * rows * sizeof(float);
            for (std::size_t row = first; row < end; ++row) {
                std::uint32_t bits = 0;
                std::memcpy(&bits, values + row * columns + column, sizeof(bits));
                planes[row] = static_cast<unsigned char>(bits);
                planes[rows + row] = static_cast<unsigned char>(bits >> 8U);
                planes[2 * rows + row] = static_cast<unsigned char>(bits >> 16U);
                planes[3 * rows + row] = static_cast<unsigned char>(bits >> 24U);
            }
        }
    }
}

} // namespace Workloads::Floor
