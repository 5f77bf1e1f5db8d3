#include "floatText.h"

#include "../common/numberText.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace MoxTool {

namespace {

constexpr int FirstExponent = -4; ///< The lowest that is printed without an exponent.
constexpr int LastExponent = 15;

int exponentIn(std::string_view text) {
    const bool isNegative = text.front() == '-';
    int size = 0;
    std::from_chars(text.data() + 1, text.data() + text.size(), size);
    return isNegative ? -size : size;
}

// @param digits   Without the point, which is after the first one.
// @param exponent Of ten, from FirstExponent to LastExponent.
std::string plainText(std::string digits, int exponent) {
    if (exponent < 0) {
        return fmt::format("0.{}{}", std::string(static_cast<std::size_t>(-exponent - 1), '0'), digits);
    }
    const auto wholeDigits = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= wholeDigits) {
        digits.resize(wholeDigits, '0');
        return fmt::format("{}.0", digits);
    }
    return fmt::format("{}.{}", digits.substr(0, wholeDigits), digits.substr(wholeDigits));
}

// @param text Such as -1.25e+07.
std::string withFixedRules(std::string_view text) {
    const auto mark = text.find('e');
    const auto exponent = exponentIn(text.substr(mark + 1));
    if (exponent < FirstExponent || exponent > LastExponent) {
        return std::string(text);
    }
    const bool isNegative = text.front() == '-';
    std::string digits(text.substr(isNegative ? 1 : 0, mark - (isNegative ? 1 : 0)));
    if (digits.size() > 1) {
        digits.erase(1, 1);
    }
    return fmt::format("{}{}", isNegative ? "-" : "", plainText(digits, exponent));
}

template <typename T>
std::string scientificText(T number) {
    if (!std::isfinite(number)) {
        return fmt::format("\"{}\"", numberText(number));
    }
    std::array<char, 32> buffer{};
    char* const begin = buffer.data();
    const auto result = std::to_chars(begin, begin + buffer.size(), number, std::chars_format::scientific);
    return withFixedRules({begin, static_cast<std::size_t>(result.ptr - begin)});
}

} // namespace

std::string floatText(float number) {
    return scientificText(number);
}

std::string floatText(double number) {
    return scientificText(number);
}

} // namespace MoxTool
