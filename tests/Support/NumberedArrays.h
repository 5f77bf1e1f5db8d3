#pragma once

#include "Support/EnvironmentGuard.h"

#include <Qel/Mox2/Model.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Support {

/// The numbers of array i. They hardly compress, and every test that reads them can compute them again.
inline std::vector<unsigned> numbersOfArray(unsigned i, unsigned length) {
    std::vector<unsigned> numbers(length);
    for (unsigned row = 0; row < length; ++row) {
        numbers[row] = (i + 1) * 2654435761U ^ (row + 1) * (row + 1) * 2246822519U;
    }
    return numbers;
}

/// Saves a model of one shape with the arrays T0, T1 and so on, each with the numbers of numbersOfArray().
/// @param blockSize The size at which a block is full, in bytes. An array of that size fills a block by
///                  itself.
/// @param lengthOf  The length of an array, in numbers.
inline void saveNumberedArrays(const std::string& path, const std::string& blockSize, unsigned count,
                               const std::function<unsigned(unsigned)>& lengthOf) {
    const EnvironmentGuard guard(BlockSizeVariable, blockSize);
    Qel::Mox2::Model model;
    model.saveTo(path, {.overwrite = true, .sourceName = "arrays", .sourceVersion = "1"});
    model.addNode(Qel::Mox2::Group, "root");
    const auto part = model.addNode(Qel::Mox2::Shape, "part");
    for (unsigned i = 0; i < count; ++i) {
        const auto numbers = numbersOfArray(i, lengthOf(i));
        Qel::Mox2::Array1d<unsigned> array(numbers.size());
        array.copy_from(numbers.data());
        model.addArrayProperty("T" + std::to_string(i), Qel::Mox2::NodeScalar, array, part,
                               Qel::Mox2::Step{});
    }
    model.close();
}

} // namespace Support
