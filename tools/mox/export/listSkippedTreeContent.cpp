#include "listSkippedTreeContent.h"

#include "../mesh/AttributeNames.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

namespace {

using NameSet = std::set<std::string>;

// Attributes that an export takes, or whose content it writes in its own way.
bool isTaken(const std::string& key) {
    namespace Name = AttributeNames;
    static const NameSet keys = {Name::Title,         Name::Dimensions,
                                 Name::Nodes,         Name::Elements,
                                 Name::ElementBlocks, Name::NodeSets,
                                 Name::SideSets,      Name::Steps,
                                 Name::SourceProgram, Name::SourceVersion,
                                 Name::SourceDate,    Name::SourceTime,
                                 Name::BlockId,       Name::BlockName,
                                 Name::ElementType,   Name::NodesPerElement,
                                 Name::Time,          Name::exact(Name::Time),
                                 Name::Frequency,     Name::exact(Name::Frequency),
                                 Name::Category,      Name::Mode};
    static constexpr std::array<std::string_view, 3> Numbered = {Name::QaRecord, Name::Component,
                                                                 Name::TimeOfStep};
    return keys.contains(key) ||
           std::ranges::any_of(Numbered, [&](auto front) { return key.starts_with(front); });
}

void addKeys(const MoxReader::Attributes& attributes, NameSet& names) {
    for (const auto& [key, value] : attributes) {
        if (!isTaken(key)) {
            names.insert(key);
        }
    }
}

void addSkipped(ConversionSummary& summary, const char* kind, const NameSet& names) {
    summary.addSkipped(kind, {names.begin(), names.end()});
}

} // namespace

void listSkippedTreeContent(const MoxReader::Model& model, const ModelChoice& choice,
                            ConversionSummary& summary) {
    std::int64_t groups = 0;
    std::int64_t materials = 0;
    NameSet nodeSets, groupKeys, datasetKeys;
    for (const auto& node : model.nodes()) {
        if (!choice.takesNode(node)) {
            continue;
        }
        if (const auto* group = node.group()) {
            groups += node.parent == 0 ? 0 : 1;
            addKeys(group->attributes, groupKeys);
        }
        materials += node.shape() == nullptr ? 0 : 1;
        if (node.nodeSets() != nullptr) {
            nodeSets.insert(node.name);
        }
        if (const auto* geometry = node.geometry()) {
            for (const auto& dataset : geometry->datasets) {
                addKeys(dataset.attributes, datasetKeys);
            }
        }
    }
    summary.addSkipped("groups below the root, since the blocks stand in one list", groups);
    summary.addSkipped("materials of shapes", materials);
    addSkipped(summary, "sets of nodes", nodeSets);
    addSkipped(summary, "attributes of groups", groupKeys);
    addSkipped(summary, "attributes of datasets", datasetKeys);
}

} // namespace MoxTool
