#include "SenseCheck.h"

#include "../mesh/DatasetNames.h"
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
namespace Format = MoxReader::Format;

bool connectsNodes(const Dataset& dataset) {
    return Format::isConnectivityType(dataset.variableType) && dataset.name != DatasetNames::PartElements &&
           dataset.elementTag == Format::UnsignedTag;
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
    GeometrySense(const std::vector<Dataset>& datasets, const MoxReader::LinkTable& links,
                  const FactsByHolder& facts, FindingList& findings)
        : datasets_(datasets), links_(links), facts_(facts), findings_(findings) {}

    void run() {
        for (const auto& dataset : datasets_) {
            if (const auto* known = factsOf(dataset)) {
                addToMesh(dataset, *known);
            }
        }
        for (const auto& [step, mesh] : meshes_) {
            checkLengths(step, mesh);
        }
        for (const auto& dataset : datasets_) {
            if (const auto* known = factsOf(dataset)) {
                checkDataset(dataset, *known);
            }
        }
    }

private:
    const NumberFacts* factsOf(const Dataset& dataset) const {
        const auto& resolution = links_.resolution(dataset.nodeId, dataset.index);
        const auto* holder = std::get_if<const Dataset*>(&resolution);
        const auto found = holder == nullptr ? facts_.end() : facts_.find(*holder);
        return found == facts_.end() ? nullptr : &found->second;
    }

    void addToMesh(const Dataset& dataset, const NumberFacts& known) {
        auto& mesh = meshes_[dataset.step];
        if (Format::isType(dataset.variableType, Format::VariableType::Coordinates)) {
            mesh.nodes.insert(known.items);
        }
        if (connectsNodes(dataset)) {
            mesh.connectivity += known.items;
        }
        if (Format::isType(dataset.variableType, Format::VariableType::Polylength)) {
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
        if (const auto own = meshes_.find(step); own != meshes_.end() && hasPart(own->second)) {
            return own->second;
        }
        const auto common = meshes_.find("");
        return common == meshes_.end() ? None : common->second;
    }

    void checkLengths(std::string_view step, const Mesh& mesh) {
        if (mesh.polylength == nullptr || !mesh.areLengthsKnown) {
            return;
        }
        const auto connectivity =
            meshWith(step, [](const Mesh& other) { return other.connectivity > 0; }).connectivity;
        if (connectivity != 0 && mesh.lengths != connectivity) {
            findings_.add(
                RuleId::Polylength,
                fmt::format("{} nodes of elements, but {} in the connectivity", mesh.lengths, connectivity),
                placeOf(*mesh.polylength));
        }
    }

    void checkDataset(const Dataset& dataset, const NumberFacts& known) {
        if (known.notFinite > 0 && !dataset.isLink) {
            findings_.add(RuleId::NotFinite, fmt::format("{} of its numbers", known.notFinite),
                          placeOf(dataset));
        }
        const auto& nodes =
            meshWith(dataset.step, [](const Mesh& mesh) { return !mesh.nodes.empty(); }).nodes;
        if (connectsNodes(dataset) && known.wereRead && !nodes.empty() && known.highest >= *nodes.rbegin()) {
            findings_.add(RuleId::Connectivity,
                          fmt::format("it names place {}, counted from 0, of {} coordinates", known.highest,
                                      *nodes.rbegin()),
                          placeOf(dataset));
        }
        if (Format::isNodalType(dataset.variableType)) {
            requireLength(dataset, known, nodes, "nodes");
        }
        if (Format::isElementalType(dataset.variableType)) {
            requireLength(
                dataset, known,
                meshWith(dataset.step, [](const Mesh& mesh) { return !mesh.elements.empty(); }).elements,
                "elements");
        }
    }

    void requireLength(const Dataset& dataset, const NumberFacts& known,
                       const std::set<std::uint64_t>& lengths, const char* what) {
        if (!lengths.empty() && !lengths.contains(known.items)) {
            findings_.add(RuleId::ResultLength,
                          fmt::format("{} items, but {} {}", known.items, *lengths.rbegin(), what),
                          placeOf(dataset));
        }
    }

    const std::vector<Dataset>& datasets_;
    const MoxReader::LinkTable& links_;
    const FactsByHolder& facts_;
    FindingList& findings_;
    std::map<std::string_view, Mesh> meshes_; ///< By step.
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
