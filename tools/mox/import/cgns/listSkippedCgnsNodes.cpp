#include "listSkippedCgnsNodes.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace MoxTool {

namespace {

// These are read elsewhere, if they can be taken at all.
const std::set<std::string> Known = {
    "CGNSBase_t",          "Zone_t",         "ZoneType_t",          "ZoneBC_t",
    "Elements_t",          "FlowSolution_t", "BaseIterativeData_t", "ZoneIterativeData_t",
    "CGNSLibraryVersion_t"};
// Nodes whose children are visited as well.
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
    explicit Collector(const CgnsFile& file) : file_(file) {}

    // Uses a stack of its own, since a file can nest nodes deeper than calls can.
    void collect() {
        waiting_.push_back(file_.root());
        while (!waiting_.empty()) {
            const auto parent = waiting_.back();
            waiting_.pop_back();
            collectBelow(parent);
        }
    }

    void addTo(ConversionSummary& summary) const {
        for (const auto& [label, names] : namesByLabel_) {
            const auto kind = Kinds.find(label);
            summary.addSkipped(kind == Kinds.end() ? "nodes of the type " + label : kind->second, names);
        }
    }

private:
    void collectBelow(const CgnsNode& parent) {
        bool hasGrid = false;
        const auto children = file_.children(parent);
        std::copy_if(children.rbegin(), children.rend(), std::back_inserter(waiting_),
                     [](const auto& node) { return Inner.contains(node.label); });
        for (const auto& node : children) {
            const bool isFirstGrid = node.label == "GridCoordinates_t" && !hasGrid;
            hasGrid = hasGrid || isFirstGrid;
            if (!isFirstGrid && !Known.contains(node.label)) {
                namesByLabel_[node.label].push_back(node.name);
            }
        }
    }

    const CgnsFile& file_;
    std::vector<CgnsNode> waiting_;
    std::map<std::string, std::vector<std::string>> namesByLabel_;
};

} // namespace

void listSkippedCgnsNodes(const CgnsFile& file, ConversionSummary& summary) {
    Collector collector(file);
    collector.collect();
    collector.addTo(summary);
}

} // namespace MoxTool
