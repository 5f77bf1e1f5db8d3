#pragma once

#include <cstdint>

namespace QelMox {

/// What the numbers of a dataset mean. Files hold these values, so they never change; the missing ones are
/// not in use.
enum class VariableType : std::uint32_t {
    Coordinates = 1,
    Connectivity0 = 4,
    Connectivity1 = 5,
    Connectivity2 = 6,
    Polylength = 9,
    NodeScalar = 12,
    NodeVector = 13,
    NodeSixA = 14,
    NodeSixB = 15,
    ElementScalar = 16,
    ElementVector = 17,
    ElementSixA = 18,
    ElementSixB = 19,
    ThirdScalar = 20,
    ThirdVector = 21,
    ThirdSixA = 22,
    ThirdSixB = 23,
    FourthScalarA = 24,
    FourthScalarB = 25,
    FourthVector = 26,
    FourthSixA = 27,
    FourthSixB = 28,
};

} // namespace QelMox
