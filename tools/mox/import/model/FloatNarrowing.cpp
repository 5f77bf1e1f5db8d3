#include "FloatNarrowing.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace MoxTool {

static_assert(std::numeric_limits<float>::is_iec559, "numbers beyond the range of float become infinite");

float FloatNarrowing::narrow(double value) {
    const auto result = static_cast<float>(value);
    if (result == value || std::isnan(value)) {
        return result;
    }
    if (std::isinf(result)) {
        ++tooLarge;
    } else if (std::abs(value) < std::numeric_limits<float>::min()) {
        ++tooSmall;
    } else {
        ++rounded;
        largestRelativeLoss = std::max(largestRelativeLoss, std::abs((result - value) / value));
    }
    return result;
}

std::vector<std::string> FloatNarrowing::report() const {
    std::vector<std::string> sentences;
    if (rounded > 0) {
        sentences.push_back(
            fmt::format("double precision: {} numbers rounded to float, largest relative loss {:.1e}",
                        rounded, largestRelativeLoss));
    }
    if (tooLarge > 0) {
        sentences.push_back(
            fmt::format("double precision: {} numbers beyond the range of float became infinite", tooLarge));
    }
    if (tooSmall > 0) {
        sentences.push_back(fmt::format("double precision: {} numbers below {:.1e} became 0 or lost digits",
                                        tooSmall, std::numeric_limits<float>::min()));
    }
    return sentences;
}

} // namespace MoxTool
