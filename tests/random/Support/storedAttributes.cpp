#include "random/Support/storedAttributes.h"

#include <bit>
#include <map>

namespace RandomUse {

namespace {

std::optional<StoredValue> storedText(const std::string& text) {
    constexpr std::size_t longest = 256;
    std::string kept = text.substr(0, longest);
    kept = kept.substr(0, kept.find('\0'));
    return StoredValue{2, 0, kept};
}

std::optional<StoredValue> stored(const AttributeValue& value) {
    if (const int* const number = std::get_if<int>(&value)) {
        return StoredValue{0, static_cast<std::uint32_t>(*number), ""};
    }
    if (const float* const number = std::get_if<float>(&value)) {
        return StoredValue{1, std::bit_cast<std::uint32_t>(*number), ""};
    }
    if (const std::string* const text = std::get_if<std::string>(&value)) {
        return storedText(*text);
    }
    if (const CText* const text = std::get_if<CText>(&value)) {
        return storedText(text->text);
    }
    return {}; // Unsigned numbers and all lists.
}

} // namespace

std::optional<StoredAttributes> storedAttributes(const AttributePairs& pairs) {
    std::map<std::string, AttributeValue> lastValues;
    for (const auto& [key, value] : pairs) {
        lastValues[key] = value;
    }
    StoredAttributes result;
    for (const auto& [key, value] : lastValues) {
        const std::optional<StoredValue> kept = stored(value);
        if (!kept) {
            return {};
        }
        result[key] = *kept;
    }
    return result;
}

} // namespace RandomUse
