#include "ModelContent.h"

#include <algorithm>
#include <limits>
#include <numeric>

const Numbers* VariableContent::find(std::size_t step, std::size_t target) const {
    const auto found = values.find({isStatic ? 0 : step, target});
    return found == values.end() ? nullptr : &found->second;
}

bool VariableContent::standsOn(std::size_t target) const {
    return std::any_of(values.begin(), values.end(),
                       [target](const auto& entry) { return entry.first.second == target; });
}

std::size_t ModelContent::elementCount() const {
    return std::accumulate(blocks.begin(), blocks.end(), std::size_t{0},
                           [](auto sum, const auto& block) { return sum + block.lengths.size(); });
}

std::vector<std::int64_t> ModelContent::elementIds() const {
    std::vector<std::int64_t> ids;
    for (const auto& block : blocks) {
        ids.insert(ids.end(), block.elementIds.begin(), block.elementIds.end());
    }
    return ids;
}

const VariableContent* ModelContent::findVariable(bool isNodal, const std::string& name) const {
    const auto found = std::find_if(variables.begin(), variables.end(), [&](const auto& variable) {
        return variable.isNodal == isNodal && variable.name == name;
    });
    return found == variables.end() ? nullptr : &*found;
}

Names ModelContent::variableNames(bool isNodal) const {
    Names names;
    for (const auto& variable : variables) {
        if (variable.isNodal == isNodal) {
            names.push_back(variable.name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::map<std::string, Names> ModelContent::arrays(bool isNodal) const {
    std::map<std::string, Names> arrays;
    for (const auto& name : variableNames(isNodal)) {
        arrays[name] = {name};
    }
    for (const auto& group : gathered.value()) {
        if (group.isNodal != isNodal) {
            continue;
        }
        for (const auto& variable : group.variables) {
            arrays.erase(variable);
        }
        arrays[group.name] = group.variables;
    }
    return arrays;
}

Numbers ModelContent::wholeColumn(const VariableContent& variable, std::size_t step) const {
    std::vector<std::size_t> sizes = zones;
    if (!variable.isNodal) {
        sizes.clear();
        for (const auto& block : blocks) {
            sizes.push_back(block.lengths.size());
        }
    }
    Numbers column;
    for (std::size_t target = 0; target < sizes.size(); ++target) {
        if (const auto* numbers = variable.find(step, target)) {
            column.insert(column.end(), numbers->begin(), numbers->end());
        } else {
            column.insert(column.end(), sizes[target], std::numeric_limits<double>::quiet_NaN());
        }
    }
    return column;
}
