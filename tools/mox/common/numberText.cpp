#include "numberText.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace MoxTool {

namespace {

// The sign of a not-a-number means nothing.
template <typename T>
std::string shortestText(T number) {
    return std::isnan(number) ? "nan" : fmt::format("{}", number);
}

} // namespace

std::string numberText(float number) {
    return shortestText(number);
}

std::string numberText(double number) {
    return shortestText(number);
}

std::string shortNumberText(double number) {
    return std::isnan(number) ? "nan" : fmt::format("{:.6g}", number);
}

std::string countText(unsigned long long count, const std::string& noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string byteText(unsigned long long bytes) {
    constexpr std::array Units = {"KiB", "MiB", "GiB", "TiB"};
    if (bytes < 1024) {
        return fmt::format("{} B", bytes);
    }
    auto amount = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; amount >= 1023.95 && unit + 1 < Units.size(); ++unit) {
        amount /= 1024;
    }
    return fmt::format("{:.1f} {}", amount, Units[unit]);
}

} // namespace MoxTool
