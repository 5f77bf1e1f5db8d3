#include "leaveCgnsNodes.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace MoxTool {

namespace {

// What is read elsewhere, if it can be taken at all.
const std::set<std::string> Known = {
    "CGNSBase_t",          "Zone_t",         "ZoneType_t",          "ZoneBC_t",
    "Elements_t",          "FlowSolution_t", "BaseIterativeData_t", "ZoneIterativeData_t",
    "CGNSLibraryVersion_t"};
// Nodes whose children are looked at as well.
const std::set<std::string> Inner = {"CGNSBase_t", "Zone_t", "ZoneBC_t"};

const std::map<std::string, std::string> Kinds = {
    {"Family_t", "families"},
    {"FamilyName_t", "names of families at zones"},
    {"BC_t", "boundary conditions"},
    {"ZoneGridConnectivity_t", "connections of zones"},
    {"GridCoordinates_t", "further grids"},
    {"DiscreteData_t", "discrete data"},
    {"IntegralData_t", "integral data"},
    {"ConvergenceHistory_t", "convergence histories"},
    {"ReferenceState_t", "reference states"},
    {"FlowEquationSet_t", "equation sets"},
    {"SimulationType_t", "simulation types"},
    {"DataClass_t", "data classes"},
    {"DimensionalUnits_t", "units"},
    {"Descriptor_t", "descriptions"},
    {"UserDefinedData_t", "user-defined data"},
    {"ZoneSubRegion_t", "regions of zones"},
    {"Ordinal_t", "ordinals"},
};

class Collector {
public:
    explicit Collector(const CgnsFile& input) : file(input) {}

    void collect(const CgnsNode& parent) {
        bool hasGrid = false;
        for (const auto& node : file.children(parent)) {
            if (Inner.contains(node.label))
                collect(node);
            const bool isFirstGrid = node.label == "GridCoordinates_t" && !hasGrid;
            hasGrid = hasGrid || isFirstGrid;
            if (!isFirstGrid && !Known.contains(node.label))
                namesByLabel[node.label].push_back(node.name);
        }
    }

    void leave(ConversionSummary& summary) const {
        for (const auto& [label, names] : namesByLabel) {
            const auto kind = Kinds.find(label);
            summary.leave(kind == Kinds.end() ? "nodes of the type " + label : kind->second, names);
        }
    }

private:
    const CgnsFile& file;
    std::map<std::string, std::vector<std::string>> namesByLabel;
};

} // namespace

void leaveCgnsNodes(const CgnsFile& file, ConversionSummary& summary) {
    Collector collector(file);
    collector.collect(file.root());
    collector.leave(summary);
}

} // namespace MoxTool
