#pragma once

#include <cstdint>

namespace Qel::Type {

/// The number by which files know the type of an array's elements.
template <typename T>
struct Traits;

template <>
struct Traits<float> {
    static constexpr std::uint32_t elementTag = 1;
};

template <>
struct Traits<unsigned int> {
    static constexpr std::uint32_t elementTag = 5;
};

} // namespace Qel::Type
