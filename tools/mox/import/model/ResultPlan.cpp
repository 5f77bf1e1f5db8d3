#include "ResultPlan.h"

#include "../../mesh/DatasetNames.h"
#include "ComponentGrouping.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

using Qel::Mox2::DatasetType;

namespace {

// The types of one kind of result, by the number of columns.
struct ResultTypes {
    DatasetType scalar;
    DatasetType vector;
    DatasetType six;
};

constexpr ResultTypes NodeTypes = {DatasetType::NodeScalar, DatasetType::NodeVector, DatasetType::NodeSixA};
constexpr ResultTypes DisplacementTypes = {DatasetType::NodeScalar, DatasetType::DisplacementVector,
                                           DatasetType::DisplacementSix};
constexpr ResultTypes ElementTypes = {DatasetType::ElementScalar, DatasetType::ElementVector,
                                      DatasetType::ElementSixA};

// A dataset's key is its name, this byte and its step.
constexpr char KeySeparator = '\x1E';

std::string withoutSeparator(std::string name) {
    std::replace(name.begin(), name.end(), KeySeparator, '_');
    return name;
}

ResultDataset datasetOf(const VariableGroup& group, const std::string& name, const ResultTypes& types) {
    if (group.kind == GroupKind::Single) {
        return {"", name, types.scalar, 1, group.variables};
    }
    if (group.kind == GroupKind::Vector) {
        return {"", name, types.vector, 3, group.variables};
    }
    return {"", name, types.six, 6, group.variables};
}

} // namespace

std::vector<ResultDataset> ResultPlan::nodeResults(const std::vector<std::string>& variables) {
    std::vector<ResultDataset> datasets;
    for (const auto& group : joinRotation(ComponentGrouping::group(variables, dimension_))) {
        const bool displaces = isDisplacement(group);
        datasets.push_back(datasetOf(group, displaces ? DatasetNames::Displacement : group.name,
                                     displaces ? DisplacementTypes : NodeTypes));
    }
    makeUnique(datasets, true);
    makeUnique(datasets, false);
    return datasets;
}

std::vector<ResultDataset> ResultPlan::elementResults(const std::vector<std::string>& variables) {
    std::vector<ResultDataset> datasets;
    for (const auto& group : ComponentGrouping::group(variables, dimension_)) {
        datasets.push_back(datasetOf(group, group.name, ElementTypes));
    }
    makeUnique(datasets, true);
    makeUnique(datasets, false);
    return datasets;
}

void ResultPlan::makeUnique(std::vector<ResultDataset>& datasets, bool singles) {
    for (auto& dataset : datasets) {
        if ((dataset.width == 1) == singles) {
            dataset.name = uniqueName(withoutSeparator(dataset.wantedName));
        }
    }
}

std::string ResultPlan::uniqueName(const std::string& wanted) {
    auto name = wanted;
    for (int number = 2; !taken_.insert(name).second; ++number) {
        name = fmt::format("{} ({})", wanted, number);
    }
    return name;
}

} // namespace MoxTool
