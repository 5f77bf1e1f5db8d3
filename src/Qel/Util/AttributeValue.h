#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace QelUtil {

/// The value of an attribute, of one of four kinds.
struct AttributeValue {
    enum Kind : std::int32_t { Integer = 0, Float = 1, Text = 2, Double = 3 };
    static constexpr std::size_t TextSize = 256;

    AttributeValue() : AttributeValue(0U) {}
    explicit AttributeValue(std::uint32_t value) : kind(Integer), integer(value) {}
    explicit AttributeValue(float value) : kind(Float), real(value) {}
    explicit AttributeValue(double value) : kind(Double), longReal(value) {}
    /// Keeps the text up to its first zero byte, at most 256 bytes.
    explicit AttributeValue(std::string_view value);

    Kind kind;
    union {
        std::uint32_t integer;
        float real;
        double longReal;
    };
    /// Empty unless the kind is Text.
    std::string text;
};

} // namespace QelUtil
