#include "ValueRow.h"

#include "../common/attributeValue.h"
#include "../mesh/AttributeNames.h"

#include <algorithm>

namespace MoxTool {

namespace {

using Names = std::vector<std::string>;

// How many letters all of the names have in common, from their ends given by these iterators on.
template <typename Begin>
std::size_t commonLength(const Names& names, Begin begin) {
    auto length = names.front().size();
    for (const auto& name : names) {
        std::size_t same = 0;
        while (same < std::min(length, name.size()) &&
               *(begin(name) + static_cast<std::ptrdiff_t>(same)) ==
                   *(begin(names.front()) + static_cast<std::ptrdiff_t>(same))) {
            ++same;
        }
        length = same;
    }
    return length;
}

// Leaves of stress_xx_1, stress_yy_1 and so on the xx and yy.
Names withoutCommonEnds(Names names) {
    const auto before = commonLength(names, [](const std::string& name) { return name.begin(); });
    for (auto& name : names) {
        name.erase(0, before);
    }
    const auto after = commonLength(names, [](const std::string& name) { return name.rbegin(); });
    for (auto& name : names) {
        name.resize(name.size() - after);
    }
    return names;
}

} // namespace

std::string ValueRow::componentName(std::size_t component) const {
    if (components.size() == 1) {
        return "";
    }
    if (components.size() == 3) {
        return std::string(1, "xyz"[component]);
    }
    constexpr std::size_t MostNames = 6; // No type of dataset has more.
    if (components.size() > MostNames) {
        return std::to_string(component + 1);
    }
    Names names;
    for (std::size_t i = 0; i < components.size(); ++i) {
        names.push_back(
            textAttribute(holder->attributes, AttributeNames::numbered(AttributeNames::Component, i + 1)));
    }
    const auto name = withoutCommonEnds(names)[component];
    return name.empty() ? std::to_string(component + 1) : name;
}

} // namespace MoxTool
