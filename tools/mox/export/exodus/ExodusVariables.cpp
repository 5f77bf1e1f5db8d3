#include "ExodusVariables.h"

#include "../../exodus/ExodusOutput.h"
#include "../../mesh/columnNames.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

namespace {

constexpr std::size_t RoomForNumber = 12;

std::string guessedName(const ResultField& field, std::size_t column) {
    return guessedColumnName(field.name, field.variableType, field.width, column);
}

bool areDisjoint(const std::set<std::size_t>& left, const std::set<std::size_t>& right) {
    return std::none_of(left.begin(), left.end(), [&right](auto target) { return right.contains(target); });
}

} // namespace

ExodusVariables::ExodusVariables(const ModelResults& all, ResultPlace place,
                                 const std::vector<const ResultField*>& mapFields, CutTexts& cutTexts) {
    for (const auto& field : all.fields) {
        if (field.place == place &&
            std::find(mapFields.begin(), mapFields.end(), &field) == mapFields.end()) {
            addField(field, cutTexts);
        }
    }
}

std::vector<std::string> ExodusVariables::names() const {
    std::vector<std::string> names;
    for (const auto& variable : variables_) {
        names.push_back(variable.name);
    }
    return names;
}

// Columns after the last component are the zeros of a model with fewer dimensions.
void ExodusVariables::addField(const ResultField& field, CutTexts& cutTexts) {
    FieldColumns entry{&field, {}};
    const auto columns = field.components.empty() ? field.width : field.components.size();
    for (std::size_t column = 0; column < columns; ++column) {
        const auto name = field.components.empty() ? guessedName(field, column) : field.components[column];
        entry.variables.push_back(
            variableFor(cutTexts.cut(name, ExodusOutput::LongestName, "names of variables"), field));
    }
    allFields_.push_back(std::move(entry));
}

std::size_t ExodusVariables::variableFor(const std::string& wanted, const ResultField& field) {
    auto name = wanted;
    for (int number = 2;; ++number) {
        const auto [place, isNew] = places_.emplace(name, variables_.size());
        if (isNew) {
            variables_.push_back({name, {}});
        }
        auto& targets = variables_[place->second].targets;
        if (areDisjoint(targets, field.targets)) {
            targets.insert(field.targets.begin(), field.targets.end());
            return place->second;
        }
        name = fmt::format("{} ({})", wanted.substr(0, ExodusOutput::LongestName - RoomForNumber), number);
    }
}

} // namespace MoxTool
