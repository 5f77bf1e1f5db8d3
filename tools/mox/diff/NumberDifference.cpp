#include "NumberDifference.h"

#include <type_traits>
#include <vector>

namespace MoxTool {

namespace {

template <typename T>
std::optional<NumberDifference> compare(const std::vector<T>& a, const std::vector<T>& b, std::uint8_t width,
                                        const Tolerance& tolerance) {
    NumberDifference difference{.count = a.size(), .areFloats = std::is_same_v<T, float>};
    double worst = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double excess = tolerance.excess(a[i], b[i]);
        difference.differing += excess > 0 ? 1 : 0;
        if (excess <= worst) {
            continue;
        }
        worst = excess;
        difference.row = i / width;
        difference.component = i % width;
        difference.a = a[i];
        difference.b = b[i];
    }
    return difference.differing == 0 ? std::nullopt : std::optional(difference);
}

} // namespace

std::optional<NumberDifference> compareNumbers(const Numbers& a, const Numbers& b, std::uint8_t width,
                                               const Tolerance& tolerance) {
    if (const auto* floats = std::get_if<std::vector<float>>(&a)) {
        return compare(*floats, std::get<std::vector<float>>(b), width, tolerance);
    }
    return compare(std::get<std::vector<std::uint32_t>>(a), std::get<std::vector<std::uint32_t>>(b), width,
                   {});
}

} // namespace MoxTool
