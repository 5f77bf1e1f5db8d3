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
        ++tooLarge_;
    } else if (std::abs(value) < std::numeric_limits<float>::min()) {
        ++tooSmall_;
    } else {
        ++rounded_;
        largestRelativeLoss_ = std::max(largestRelativeLoss_, std::abs((result - value) / value));
    }
    return result;
}

void FloatNarrowing::add(const FloatNarrowing& other) {
    rounded_ += other.rounded_;
    tooLarge_ += other.tooLarge_;
    tooSmall_ += other.tooSmall_;
    largestRelativeLoss_ = std::max(largestRelativeLoss_, other.largestRelativeLoss_);
}

std::vector<std::string> FloatNarrowing::report() const {
    std::vector<std::string> sentences;
    if (rounded_ > 0) {
        sentences.push_back(
            fmt::format("double precision: {} numbers rounded to float, largest relative loss {:.1e}",
                        rounded_, largestRelativeLoss_));
    }
    if (tooLarge_ > 0) {
        sentences.push_back(
            fmt::format("double precision: {} numbers beyond the range of float became infinite", tooLarge_));
    }
    if (tooSmall_ > 0) {
        sentences.push_back(fmt::format("double precision: {} numbers below {:.1e} became 0 or lost digits",
                                        tooSmall_, std::numeric_limits<float>::min()));
    }
    return sentences;
}

} // namespace MoxTool
