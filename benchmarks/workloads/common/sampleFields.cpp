#include "common/sampleFields.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace Workloads {

std::vector<float> sampleField(std::size_t rows, std::size_t columns, std::size_t number) {
    // Nodes are numbered along the edges of a block, as a mesh generator does it.
    const auto edge = static_cast<std::size_t>(std::ceil(std::cbrt(static_cast<double>(rows))));
    const double scale = 1.0 / static_cast<double>(edge);
    const double phase = 0.7 * static_cast<double>(number);
    std::minstd_rand random(static_cast<unsigned int>(number + 1));
    std::uniform_real_distribution<double> noise(-1e-5, 1e-5);
    std::vector<float> values(rows * columns);
    for (std::size_t row = 0; row < rows; ++row) {
        const double x = static_cast<double>(row % edge) * scale;
        const double y = static_cast<double>(row / edge % edge) * scale;
        const double z = static_cast<double>(row / edge / edge) * scale;
        for (std::size_t column = 0; column < columns; ++column) {
            const double turn = static_cast<double>(column);
            const double wave = std::sin(3.0 * x + 2.0 * y + z + turn + phase) +
                                0.3 * std::cos(7.0 * y - 5.0 * z * turn + phase);
            values[row * columns + column] = static_cast<float>(0.01 * wave * (1.0 + noise(random)));
        }
    }
    return values;
}

std::vector<std::vector<float>> bulkFields() {
    std::vector<std::vector<float>> fields;
    for (std::size_t i = 0; i < FieldCount; ++i) {
        fields.push_back(sampleField(FieldRows, FieldColumns, i));
    }
    return fields;
}

void fillLongArray(std::uint64_t mebibytes, float* target) {
    for (std::uint64_t i = 0; i < fieldsIn(mebibytes); ++i) {
        target = std::ranges::copy(sampleField(FieldRows, FieldColumns, i % FieldCount), target).out;
    }
}

std::vector<std::vector<float>> smallArrays() {
    const std::vector<float> values = sampleField(SmallArrayCount * SmallArrayValues, 1, 0);
    std::vector<std::vector<float>> arrays;
    for (std::size_t i = 0; i < SmallArrayCount; ++i) {
        const auto begin = values.begin() + static_cast<std::ptrdiff_t>(i * SmallArrayValues);
        arrays.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(SmallArrayValues));
    }
    return arrays;
}

} // namespace Workloads
