#include "ValueRow.h"

#include "../common/utf8.h"
#include "../mesh/columnNames.h"

#include <algorithm>

namespace MoxTool {

namespace {

using Names = std::vector<std::string>;

// How many bytes all of the names have in common, from their ends given by these iterators on.
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

bool isInsideCharacter(const std::string& text, std::size_t place) {
    return place < text.size() && isUtf8Continuation(text[place]);
}

// Leaves of stress_xx_1, stress_yy_1 and so on the xx and yy.
Names withoutCommonEnds(Names names) {
    auto before = commonLength(names, [](const std::string& name) { return name.begin(); });
    while (before > 0 && isInsideCharacter(names.front(), before)) {
        --before;
    }
    for (auto& name : names) {
        name.erase(0, before);
    }
    auto after = commonLength(names, [](const std::string& name) { return name.rbegin(); });
    while (after > 0 && isInsideCharacter(names.front(), names.front().size() - after)) {
        --after;
    }
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
    constexpr std::size_t MostNames = 6; // No type of dataset has more.
    if (components.size() > MostNames) {
        return std::to_string(component + 1);
    }
    const auto name = withoutCommonEnds(columnNames(first->name, *holder))[component];
    return name.empty() ? std::to_string(component + 1) : name;
}

} // namespace MoxTool
