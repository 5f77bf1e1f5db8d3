#pragma once

#include "ModelContent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

/// Expects the numbers of the original, narrowed to float, to the last bit; NaN where the original has NaN.
inline void expectNumbers(const Numbers& actual, const Numbers& original, const std::string& what) {
    ASSERT_EQ(actual.size(), original.size()) << what;
    const auto isSame = [](double left, double right) {
        const double asFloat = static_cast<float>(right);
        return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(asFloat) ||
               (std::isnan(left) && std::isnan(right));
    };
    const auto [found, wanted] = std::mismatch(actual.begin(), actual.end(), original.begin(), isSame);
    ASSERT_TRUE(found == actual.end())
        << what << ": number " << found - actual.begin() << " is " << *found << " instead of " << *wanted;
}
