#include "attributeValue.h"

#include <charconv>

namespace MoxTool {

namespace {

struct ToNumber {
    std::optional<double> operator()(std::uint32_t integer) const {
        return static_cast<std::int32_t>(integer);
    }
    std::optional<double> operator()(float number) const { return number; }
    std::optional<double> operator()(double number) const { return number; }
    std::optional<double> operator()(const std::string& text) const {
        double number = 0;
        const auto* end = text.data() + text.size();
        const auto result = std::from_chars(text.data(), end, number);
        return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
    }
};

} // namespace

std::string textAttribute(const MoxReader::Attributes& attributes, const std::string& key) {
    const auto found = attributes.find(key);
    const auto* text = found == attributes.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text == nullptr ? "" : *text;
}

std::optional<double> numberAttribute(const MoxReader::Attributes& attributes, const std::string& key) {
    const auto found = attributes.find(key);
    return found == attributes.end() ? std::nullopt : std::visit(ToNumber{}, found->second);
}

} // namespace MoxTool
