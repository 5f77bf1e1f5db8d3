#include "SenseCheck.h"

#include "DatasetCheck.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <map>
#include <set>
#include <string_view>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

/// Numbers of variable types; see MoxReader::Format::VariableTypes.
enum : std::uint32_t {
    Coordinates = 1,
    FirstConnectivity = 4,
    LastConnectivity = 6,
    Polylength = 9,
    FirstNodeResult = 12,
    LastNodeResult = 15,
    FirstElementResult = 16,
    LastElementResult = 19
};

/// Has a type of connectivity, but holds ids of elements.
constexpr std::string_view PartElements = "Part Elements";

bool isWithin(const Dataset& dataset, std::uint32_t first, std::uint32_t last) {
    return dataset.variableType >= first && dataset.variableType <= last;
}

bool isConnectivity(const Dataset& dataset) {
    return isWithin(dataset, FirstConnectivity, LastConnectivity) && dataset.name != PartElements &&
           dataset.elementTag == MoxReader::Format::UnsignedTag;
}

/// The mesh of one step of one geometry.
struct Mesh {
    std::set<std::uint64_t> nodes;    ///< Item counts of coordinates.
    std::set<std::uint64_t> elements; ///< Item counts of polylengths, of each one and in total.
    std::uint64_t allElements = 0;
    std::uint64_t connectivity = 0; ///< Items of all connectivity together.
    std::uint64_t lengths = 0;      ///< Sum of all polylengths.
    bool areLengthsKnown = true;
    const Dataset* polylength = nullptr;
};

/// The checks of one geometry.
class GeometrySense {
public:
    GeometrySense(const std::vector<Dataset>& list, const MoxReader::LinkTable& table,
                  const FactsByHolder& known, FindingList& found)
        : datasets(list), links(table), facts(known), findings(found) {}

    void run() {
        for (const auto& dataset : datasets) {
            if (const auto* known = factsOf(dataset)) {
                addToMesh(dataset, *known);
            }
        }
        for (const auto& [step, mesh] : meshes) {
            checkLengths(step, mesh);
        }
        for (const auto& dataset : datasets) {
            if (const auto* known = factsOf(dataset)) {
                checkDataset(dataset, *known);
            }
        }
    }

private:
    const NumberFacts* factsOf(const Dataset& dataset) const {
        const auto& resolution = links.resolution(dataset.nodeId, dataset.index);
        const auto* holder = std::get_if<const Dataset*>(&resolution);
        const auto found = holder == nullptr ? facts.end() : facts.find(*holder);
        return found == facts.end() ? nullptr : &found->second;
    }

    void addToMesh(const Dataset& dataset, const NumberFacts& known) {
        auto& mesh = meshes[dataset.step];
        if (dataset.variableType == Coordinates) {
            mesh.nodes.insert(known.items);
        }
        if (isConnectivity(dataset)) {
            mesh.connectivity += known.items;
        }
        if (dataset.variableType == Polylength) {
            mesh.allElements += known.items;
            mesh.elements.insert({known.items, mesh.allElements});
            mesh.lengths += known.sum;
            mesh.areLengthsKnown = mesh.areLengthsKnown && known.wereRead;
            mesh.polylength = &dataset;
        }
    }

    template <class Part>
    const Mesh& meshWith(std::string_view step, const Part& hasPart) const {
        static const Mesh None;
        if (const auto own = meshes.find(step); own != meshes.end() && hasPart(own->second)) {
            return own->second;
        }
        const auto common = meshes.find("");
        return common == meshes.end() ? None : common->second;
    }

    void checkLengths(std::string_view step, const Mesh& mesh) {
        if (mesh.polylength == nullptr || !mesh.areLengthsKnown) {
            return;
        }
        const auto connectivity =
            meshWith(step, [](const Mesh& other) { return other.connectivity > 0; }).connectivity;
        if (connectivity != 0 && mesh.lengths != connectivity) {
            findings.add(
                RuleId::Polylength,
                fmt::format("{} nodes of elements, but {} in the connectivity", mesh.lengths, connectivity),
                placeOf(*mesh.polylength));
        }
    }

    void checkDataset(const Dataset& dataset, const NumberFacts& known) {
        if (known.notFinite > 0 && !dataset.isLink) {
            findings.add(RuleId::NotFinite, fmt::format("{} of its numbers", known.notFinite),
                         placeOf(dataset));
        }
        const auto& nodes =
            meshWith(dataset.step, [](const Mesh& mesh) { return !mesh.nodes.empty(); }).nodes;
        if (isConnectivity(dataset) && known.wereRead && !nodes.empty() && known.highest >= *nodes.rbegin()) {
            findings.add(RuleId::Connectivity,
                         fmt::format("it names place {}, counted from 0, of {} coordinates", known.highest,
                                     *nodes.rbegin()),
                         placeOf(dataset));
        }
        if (isWithin(dataset, FirstNodeResult, LastNodeResult)) {
            requireLength(dataset, known, nodes, "nodes");
        }
        if (isWithin(dataset, FirstElementResult, LastElementResult)) {
            requireLength(
                dataset, known,
                meshWith(dataset.step, [](const Mesh& mesh) { return !mesh.elements.empty(); }).elements,
                "elements");
        }
    }

    void requireLength(const Dataset& dataset, const NumberFacts& known,
                       const std::set<std::uint64_t>& lengths, const char* what) {
        if (!lengths.empty() && !lengths.contains(known.items)) {
            findings.add(RuleId::ResultLength,
                         fmt::format("{} items, but {} {}", known.items, *lengths.rbegin(), what),
                         placeOf(dataset));
        }
    }

    const std::vector<Dataset>& datasets;
    const MoxReader::LinkTable& links;
    const FactsByHolder& facts;
    FindingList& findings;
    std::map<std::string_view, Mesh> meshes; ///< By step.
};

} // namespace

void checkSense(const std::vector<Node>& nodes, const MoxReader::LinkTable& links, const FactsByHolder& facts,
                FindingList& findings) {
    for (const auto& node : nodes) {
        if (node.geometry() != nullptr) {
            GeometrySense(node.geometry()->datasets, links, facts, findings).run();
        }
    }
}

} // namespace MoxTool
