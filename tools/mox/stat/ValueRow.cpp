#include "ValueRow.h"

#include "../common/attributeValue.h"
#include "../mesh/AttributeNames.h"

namespace MoxTool {

std::string ValueRow::componentName(std::size_t component) const {
    if (components.size() == 1) {
        return "";
    }
    if (components.size() == 3) {
        return std::string(1, "xyz"[component]);
    }
    const auto name =
        textAttribute(holder->attributes, AttributeNames::numbered(AttributeNames::Component, component + 1));
    return name.empty() ? std::to_string(component + 1) : name;
}

} // namespace MoxTool
