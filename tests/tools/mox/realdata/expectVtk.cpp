#include "expectVtk.h"

#include "cellKinds.h"
#include "expectNumbers.h"

#include <algorithm>
#include <set>

namespace {

Numbers doubles(const std::vector<std::int64_t>& integers) {
    return {integers.begin(), integers.end()};
}

Numbers columnOf(const VtkArrayRead& array, std::size_t column) {
    Numbers numbers;
    for (auto place = column; place < array.numbers.size(); place += array.columns) {
        numbers.push_back(array.numbers[place]);
    }
    return numbers;
}

void expectMesh(const VtkMeshRead& mesh, const ModelContent& original) {
    ASSERT_EQ(mesh.points, original.nodeIds.size());
    ASSERT_EQ(mesh.cells, original.elementCount());
    ASSERT_NO_FATAL_FAILURE(expectNumbers(mesh.numbers("Points/Points"), original.points, "points"));
    Numbers connectivity, offsets, types, parts;
    Names names;
    for (const auto& block : original.blocks) {
        for (const auto node : nodesInOrder(block, original.ordering, NodeOrdering::Vtk)) {
            connectivity.push_back(static_cast<double>(node));
        }
        for (const auto length : block.lengths) {
            offsets.push_back((offsets.empty() ? 0 : offsets.back()) + static_cast<double>(length));
        }
        types.insert(types.end(), block.lengths.size(), block.vtkCell);
        parts.insert(parts.end(), block.lengths.size(), static_cast<double>(names.size()));
        names.push_back(block.partName());
    }
    EXPECT_EQ(mesh.numbers("Cells/connectivity"), connectivity);
    EXPECT_EQ(mesh.numbers("Cells/offsets"), offsets);
    EXPECT_EQ(mesh.numbers("Cells/types"), types);
    EXPECT_EQ(mesh.numbers("CellData/Part"), parts);
    EXPECT_EQ(mesh.texts("FieldData/Part Names"), names);
    EXPECT_EQ(mesh.numbers("PointData/Node Ids"), doubles(original.nodeIds));
    EXPECT_EQ(mesh.numbers("CellData/Element IDs"), doubles(original.elementIds()));
}

void expectLabels(const VtkMeshRead& mesh, const ModelContent& original, std::size_t step) {
    if (original.steps.empty()) {
        EXPECT_FALSE(mesh.arrays.contains("FieldData/Step"));
        EXPECT_FALSE(mesh.arrays.contains("FieldData/TimeValue"));
        return;
    }
    EXPECT_EQ(mesh.texts("FieldData/Step"), Names{original.steps[step].name});
    EXPECT_EQ(mesh.numbers("FieldData/TimeValue"), Numbers{original.steps[step].time});
}

// The arrays of results, by their names.
std::map<std::string, VtkArrayRead> resultsOf(const VtkMeshRead& mesh, const std::string& section) {
    const std::set<std::string> others = {"Node Ids", "Element IDs", "Part"};
    std::map<std::string, VtkArrayRead> results;
    for (const auto& [key, array] : mesh.arrays) {
        const auto name = key.substr(key.find('/') + 1);
        if (key.starts_with(section + "/") && !others.contains(name)) {
            results[name] = array;
        }
    }
    return results;
}

// A displacement with a rotation is split, so that VTK can warp a mesh by the displacement.
std::map<std::string, Names> withRotationApart(std::map<std::string, Names> arrays) {
    const auto found = arrays.find("Displacement");
    if (found != arrays.end() && found->second.size() == 6) {
        auto& columns = found->second;
        arrays["Rotation"] = {columns.begin() + 3, columns.end()};
        columns.resize(3);
    }
    return arrays;
}

bool stands(const VariableContent& variable, std::size_t step) {
    return std::any_of(variable.values.begin(), variable.values.end(),
                       [&](const auto& entry) { return variable.isStatic || entry.first.first == step; });
}

// The variables of each array that has numbers in a step.
std::map<std::string, Names> arraysInStep(const ModelContent& original, bool isNodal, std::size_t step) {
    auto arrays = withRotationApart(original.arrays(isNodal));
    std::erase_if(arrays, [&](const auto& array) {
        return !stands(*original.findVariable(isNodal, array.second.front()), step);
    });
    return arrays;
}

void expectColumns(const VtkArrayRead& array, const Names& variables, const ModelContent& original,
                   bool isNodal, std::size_t step) {
    ASSERT_LE(variables.size(), array.columns);
    for (std::size_t column = 0; column < variables.size(); ++column) {
        const auto* variable = original.findVariable(isNodal, variables[column]);
        ASSERT_NE(variable, nullptr) << variables[column];
        ASSERT_NO_FATAL_FAILURE(
            expectNumbers(columnOf(array, column), original.wholeColumn(*variable, step), variables[column]));
    }
    // The third component of a two-dimensional model.
    auto zeros = columnOf(array, 0);
    std::replace_if(
        zeros.begin(), zeros.end(), [](double number) { return !std::isnan(number); }, 0.0);
    for (auto column = variables.size(); column < array.columns; ++column) {
        ASSERT_NO_FATAL_FAILURE(expectNumbers(columnOf(array, column), zeros, "third column"));
    }
}

void expectResults(const VtkMeshRead& mesh, const ModelContent& original, bool isNodal, std::size_t step) {
    std::map<std::string, Names> arrays;
    std::multiset<std::string> found;
    for (const auto& [name, array] : resultsOf(mesh, isNodal ? "PointData" : "CellData")) {
        const auto& variables = arrays[name] = array.columnNames.empty() ? Names{name} : array.columnNames;
        ASSERT_NO_FATAL_FAILURE(expectColumns(array, variables, original, isNodal, step)) << name;
        found.insert(variables.begin(), variables.end());
    }
    std::multiset<std::string> expected;
    for (const auto& variable : original.variables) {
        if (variable.isNodal == isNodal && stands(variable, step)) {
            expected.insert(variable.name);
        }
    }
    EXPECT_EQ(found, expected);
    if (original.gathered) {
        EXPECT_EQ(arrays, arraysInStep(original, isNodal, step));
    }
}

} // namespace

void expectVtk(const VtkMeshRead& mesh, const ModelContent& original, std::size_t step) {
    ASSERT_NO_FATAL_FAILURE(expectMesh(mesh, original));
    expectLabels(mesh, original, step);
    for (const bool isNodal : {true, false}) {
        ASSERT_NO_FATAL_FAILURE(expectResults(mesh, original, isNodal, step));
    }
}
