#include "ComponentGrouping.h"

#include "../../common/lowerCase.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace MoxTool {

namespace {

constexpr std::size_t Six = 6;

// Columns of a quantity by the letters after its base.
const std::map<std::string, std::size_t> TensorColumns = {{"xx", 0}, {"yy", 1}, {"zz", 2}, {"xy", 3},
                                                          {"yz", 4}, {"zx", 5}, {"xz", 5}};
const std::map<std::string, std::size_t> VectorColumns = {{"x", 0}, {"y", 1}, {"z", 2}};

// What the parts of one quantity have in common.
struct Quantity {
    std::string base;
    std::string underscore;
    std::string number; // with the underscore before it
    bool isTensor;

    auto operator<=>(const Quantity&) const = default;
};

struct Part {
    Quantity quantity;
    std::size_t column;
};

using Columns = std::map<std::size_t, std::size_t>; // from a column to a variable

// The underscore and the number that end a name; empty if it has none.
std::string_view trailingNumber(std::string_view name) {
    constexpr std::string_view Digits = "0123456789";
    const auto end = name.find_last_not_of(Digits);
    const bool isNumber = end != std::string_view::npos && end + 1 < name.size() && name[end] == '_';
    return isNumber ? name.substr(end) : std::string_view();
}

// Two letters of different case are the end of a base and a component, as in "VelocityY".
bool areOfOneCase(std::string_view letters) {
    const auto isLower = [](unsigned char letter) { return std::islower(letter) != 0; };
    return std::all_of(letters.begin(), letters.end(), isLower) ||
           std::none_of(letters.begin(), letters.end(), isLower);
}

// The name is cut only at its ends: a pattern would go through it letter by letter and, in some libraries,
// call by call, and names from files can be of any length.
std::optional<Part> parseAs(bool isTensor, std::string_view name, std::string_view number) {
    const auto& columns = isTensor ? TensorColumns : VectorColumns;
    const std::size_t length = isTensor ? 2 : 1;
    if (name.size() < length) {
        return std::nullopt;
    }
    const auto front = name.substr(0, name.size() - length);
    const auto letters = name.substr(front.size());
    const auto column = columns.find(lowerCase(std::string(letters)));
    const auto baseEnd = front.find_last_not_of('_');
    if (column == columns.end() || !areOfOneCase(letters) || baseEnd == std::string_view::npos) {
        return std::nullopt;
    }
    const auto base = front.substr(0, baseEnd + 1);
    return Part{{std::string(base), std::string(front.substr(base.size())), std::string(number), isTensor},
                column->second};
}

std::optional<Part> parse(std::string_view name) {
    const auto number = trailingNumber(name);
    name.remove_suffix(number.size());
    const auto part = parseAs(true, name, number);
    return part ? part : parseAs(false, name, number);
}

std::map<Quantity, Columns> collectQuantities(const std::vector<std::string>& names) {
    std::map<Quantity, Columns> quantities;
    for (std::size_t variable = 0; variable < names.size(); ++variable) {
        if (const auto part = parse(names[variable])) {
            quantities[part->quantity].emplace(part->column, variable);
        }
    }
    return quantities;
}

bool isComplete(const Quantity& quantity, const Columns& columns, int dimension) {
    if (quantity.isTensor) {
        return columns.size() == Six;
    }
    const bool isPlane = dimension == 2 && columns.size() == 2 && !columns.contains(2);
    return columns.size() == 3 || isPlane;
}

VariableGroup groupOf(const Quantity& quantity, const Columns& columns) {
    VariableGroup group{
        quantity.base + quantity.number, quantity.isTensor ? GroupKind::Tensor : GroupKind::Vector, {}};
    for (const auto& [column, variable] : columns) {
        group.variables.push_back(variable);
    }
    return group;
}

std::size_t firstVariable(const VariableGroup& group) {
    return *std::min_element(group.variables.begin(), group.variables.end());
}

void addSingles(const std::vector<std::string>& names, std::vector<VariableGroup>& groups) {
    std::set<std::size_t> grouped;
    for (const auto& group : groups) {
        grouped.insert(group.variables.begin(), group.variables.end());
    }
    for (std::size_t variable = 0; variable < names.size(); ++variable) {
        if (!grouped.contains(variable)) {
            groups.push_back({names[variable], GroupKind::Single, {variable}});
        }
    }
}

bool isNamed(const VariableGroup& group, const std::set<std::string>& names) {
    const bool isVector = group.kind == GroupKind::Vector || group.kind == GroupKind::VectorPair;
    return isVector && names.contains(lowerCase(group.name));
}

bool isRotation(const VariableGroup& group) {
    return isNamed(group, {"rot", "rotation", "rotations"});
}

} // namespace

std::vector<VariableGroup> ComponentGrouping::group(const std::vector<std::string>& names, int dimension) {
    std::vector<VariableGroup> groups;
    for (const auto& [quantity, columns] : collectQuantities(names)) {
        if (isComplete(quantity, columns, dimension)) {
            groups.push_back(groupOf(quantity, columns));
        }
    }
    addSingles(names, groups);
    std::sort(groups.begin(), groups.end(), [](const VariableGroup& left, const VariableGroup& right) {
        return firstVariable(left) < firstVariable(right);
    });
    return groups;
}

bool isDisplacement(const VariableGroup& group) {
    return isNamed(group, {"disp", "displ", "displacement"});
}

std::vector<VariableGroup> joinRotation(std::vector<VariableGroup> groups) {
    const auto isOnly = [&groups](auto test) {
        return std::count_if(groups.begin(), groups.end(), test) == 1;
    };
    if (!isOnly(isDisplacement) || !isOnly(isRotation)) {
        return groups;
    }
    const auto displacement = std::find_if(groups.begin(), groups.end(), isDisplacement);
    const auto rotation = std::find_if(groups.begin(), groups.end(), isRotation);
    auto& columns = displacement->variables;
    if (columns.size() != 3 || rotation->variables.size() != 3) {
        return groups;
    }
    displacement->kind = GroupKind::VectorPair;
    columns.insert(columns.end(), rotation->variables.begin(), rotation->variables.end());
    groups.erase(rotation);
    return groups;
}

} // namespace MoxTool
