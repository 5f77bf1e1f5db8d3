#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using Numbers = std::vector<double>;
using Names = std::vector<std::string>;

/// The format whose order the nodes of an element are in.
enum class NodeOrdering { Exodus, Vtk, Cgns, Gmsh };

/// Elements of one kind, in an Exodus file or wherever a model makes such a block.
struct BlockContent {
    std::int64_t id = 0;
    std::string name; ///< Can be empty.
    std::string type; ///< In an Exodus file.
    int vtkCell = 0;
    std::size_t zone = 0;              ///< The place of the zone that has its nodes.
    std::vector<std::int64_t> lengths; ///< The number of nodes of each element.
    std::vector<std::int64_t> nodes;   ///< Places in all points, from 0, element by element.
    std::vector<std::int64_t> elementIds;

    /// The name in a model and in VTK.
    std::string partName() const { return name.empty() ? "Block " + std::to_string(id) : name; }
};

struct StepContent {
    std::string name;
    double time;
};

/// One number for each node or element, in each step.
struct VariableContent {
    bool isNodal = false;
    std::string name;
    bool isStatic = false; ///< The same in all steps.
    /// By the places of the step (0 for a static variable) and of the zone or block; those without values are
    /// left out.
    std::map<std::pair<std::size_t, std::size_t>, Numbers> values;

    const Numbers* find(std::size_t step, std::size_t target) const;
    bool standsOn(std::size_t target) const; ///< In any step.
};

/// Variables that are in one array, or a variable whose array has another name.
struct GatheredContent {
    bool isNodal;
    std::string name;
    Names variables;
};

/// The contents of a file of a mesh with results, independent of any format.
struct ModelContent {
    NodeOrdering ordering = NodeOrdering::Exodus;
    std::string title;
    int dimension = 3;
    std::vector<std::array<std::string, 4>> qaRecords;
    Numbers points; ///< x, y, z of each node, zone by zone.
    std::vector<std::int64_t> nodeIds;
    std::vector<std::size_t> zones; ///< The number of nodes of each zone.
    std::vector<BlockContent> blocks;
    std::vector<StepContent> steps; ///< With results.
    Numbers bareTimes;              ///< The times of the steps of a file without results.
    std::vector<VariableContent> variables;
    /// Nothing if this is not known.
    std::optional<std::vector<GatheredContent>> gathered;
    Names globalNames;
    std::vector<Numbers> globals; ///< By step.

    std::size_t elementCount() const;
    std::vector<std::int64_t> elementIds() const;
    /// Null if there is none.
    const VariableContent* findVariable(bool isNodal, const std::string& name) const;
    Names variableNames(bool isNodal) const; ///< Sorted.
    /// The variables of each array by its name.
    std::map<std::string, Names> arrays(bool isNodal) const;
    /// A number for each node or element of the model; NaN where there is none.
    Numbers wholeColumn(const VariableContent& variable, std::size_t step) const;
};
