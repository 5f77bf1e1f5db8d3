#include "toAttributeList.h"

#include <utility>

namespace MoxTool {

namespace {

using QelUtil::AttributeValue;

struct Converter {
    AttributeValue operator()(std::uint32_t value) const { return AttributeValue(value); }
    AttributeValue operator()(float value) const { return AttributeValue(value); }
    AttributeValue operator()(double value) const { return AttributeValue(value); }
    AttributeValue operator()(const std::string& value) const { return textValue(value); }
};

} // namespace

AttributeValue textValue(std::string text) {
    AttributeValue value{std::string_view()};
    value.text = std::move(text);
    return value;
}

QelUtil::AttributeList toAttributeList(const MoxReader::Attributes& attributes) {
    QelUtil::AttributeList list;
    list.reserve(attributes.size());
    for (const auto& [key, value] : attributes) {
        list.emplace(key, std::visit(Converter(), value));
    }
    return list;
}

} // namespace MoxTool
