#include "ExodusMeshImporter.h"

#include "../../common/Failure.h"
#include "../../common/utf8Path.h"
#include "../../common/visibleText.h"
#include "../../mesh/AttributeNames.h"
#include "../../mesh/DatasetNames.h"
#include "../../mesh/ElementType.h"
#include "../model/makeStep.h"
#include "../model/setNumber.h"
#include "blockName.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

namespace MoxTool {

using Qel::Mox2::DatasetType;

namespace {

// From 0 to 3; nothing for a block that a model can't take.
std::optional<int> dimensionOf(const ExodusBlock& block, const ExodusSource& file) {
    return ElementType(block.elementType).dimension(block.nodesPerElement, file.dimension());
}

bool isChosen(const ExodusBlock& block, Choices& choices) {
    return choices.blocks.takes(blockName(block), {std::to_string(block.id)});
}

bool becomesPart(const ExodusBlock& block, const ExodusSource& file) {
    return block.elementCount > 0 && dimensionOf(block, file).has_value();
}

// Looks at all variables even if one of them is enough, since a choice must have seen all.
bool takesAny(const std::vector<std::string>& variables, Choice& choice) {
    return std::ranges::count_if(variables, [&](const auto& name) { return choice.takes(name); }) > 0;
}

// A variable that is declared need not have numbers anywhere.
bool hasResults(const ExodusSource& file, Choices& choices) {
    const bool hasNodeResults =
        takesAny(file.variableNames(EX_NODAL), choices.variables) && file.counts().num_nodes > 0;
    const auto variables = file.variableNames(EX_ELEM_BLOCK);
    const bool hasElementResults = takesAny(variables, choices.variables);
    const auto table = file.elementTruthTable(variables.size());
    for (std::size_t block = 0; block < file.blocks().size(); ++block) {
        if (!becomesPart(file.blocks()[block], file) || !isChosen(file.blocks()[block], choices)) {
            continue;
        }
        bool isUsed = hasNodeResults;
        for (std::size_t i = 0; hasElementResults && i < variables.size(); ++i) {
            isUsed =
                isUsed || (table[block * variables.size() + i] != 0 && choices.variables.takes(variables[i]));
        }
        if (isUsed) {
            return true;
        }
    }
    return false;
}

// A model knows steps only by their results.
void setTimes(Qel::Mox2::Attributes& attributes, const std::vector<double>& times,
              const ChosenSteps& choice) {
    std::size_t number = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (choice.takes(i)) {
            attributes.set(AttributeNames::numbered(AttributeNames::TimeOfStep, ++number),
                           fmt::format("{}", times[i]));
        }
    }
}

void setQaRecords(Qel::Mox2::Attributes& attributes, const std::vector<QaRecord>& records) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& record = records[i];
        attributes.set(
            AttributeNames::numbered(AttributeNames::QaRecord, i + 1),
            fmt::format("{}, {}, {}, {}", record.program, record.version, record.date, record.time));
    }
    if (records.empty()) {
        return;
    }
    attributes.set(AttributeNames::SourceProgram, records.front().program);
    attributes.set(AttributeNames::SourceVersion, records.front().version);
    attributes.set(AttributeNames::SourceDate, records.front().date);
    attributes.set(AttributeNames::SourceTime, records.front().time);
}

Qel::Mox2::Attributes blockAttributes(const ExodusBlock& block) {
    Qel::Mox2::Attributes attributes;
    setNumber(attributes, AttributeNames::BlockId, block.id);
    attributes.set(AttributeNames::BlockName, block.name);
    attributes.set(AttributeNames::ElementType, block.elementType);
    setNumber(attributes, AttributeNames::Elements, block.elementCount);
    if (!ElementType(block.elementType).isNsided()) {
        setNumber(attributes, AttributeNames::NodesPerElement, block.nodesPerElement);
    }
    return attributes;
}

} // namespace

ExodusMesh ExodusMeshImporter::run() {
    target_.limits.checkNodeCount(static_cast<std::uint64_t>(file_.counts().num_nodes));
    addRoot();
    addParts();
    addNodes();
    addAllElements();
    return mesh_;
}

void ExodusMeshImporter::addRoot() {
    const std::string title = file_.counts().title;
    const auto stem = utf8Of(pathOf(file_.path()).stem());
    target_.choices.steps.resolve(stepsAt(file_.times()));
    if (const auto& root = target_.share.rootOfPiece) {
        target_.model.addNode(Qel::Mox2::NodeType::RootGroup, *root);
        return;
    }
    target_.model.addNode(Qel::Mox2::NodeType::RootGroup, title.empty() ? stem : title, rootAttributes());
}

Qel::Mox2::Attributes ExodusMeshImporter::rootAttributes() const {
    const auto& counts = file_.counts();
    Qel::Mox2::Attributes attributes;
    attributes.set(AttributeNames::Title, counts.title);
    attributes.set(AttributeNames::SourceFile, utf8Of(pathOf(file_.path()).filename()));
    attributes.set("Exodus API Version", fmt::format("{:.2f}", file_.apiVersion()));
    attributes.set("Exodus File Version", fmt::format("{:.2f}", file_.fileVersion()));
    setNumber(attributes, AttributeNames::Dimensions, counts.num_dim);
    setNumber(attributes, AttributeNames::Nodes, counts.num_nodes);
    setNumber(attributes, AttributeNames::Elements, counts.num_elem);
    setNumber(attributes, AttributeNames::ElementBlocks, counts.num_elem_blk);
    setNumber(attributes, AttributeNames::NodeSets, counts.num_node_sets);
    setNumber(attributes, AttributeNames::SideSets, counts.num_side_sets);
    setNumber(attributes, AttributeNames::Steps, static_cast<std::int64_t>(file_.times().size()));
    if (!hasResults(file_, target_.choices)) {
        setTimes(attributes, file_.times(), target_.choices.steps);
    }
    setQaRecords(attributes, file_.qaRecords());
    return attributes;
}

void ExodusMeshImporter::addParts() {
    std::vector<std::string> empty;
    std::vector<std::string> unknown;
    std::vector<unsigned int> geometries;
    for (std::size_t i = 0; i < file_.blocks().size(); ++i) {
        const auto& block = file_.blocks()[i];
        const auto dimension = dimensionOf(block, file_);
        if (!isChosen(block, target_.choices)) {
            continue;
        }
        if (block.elementCount == 0) {
            empty.push_back(blockName(block));
        } else if (!dimension) {
            unknown.push_back(fmt::format("{}: {} elements of type {}", blockName(block), block.elementCount,
                                          block.elementType));
        } else {
            mesh_.parts.push_back(addPart(i, *dimension));
            geometries.push_back(mesh_.parts.back().geometry);
        }
    }
    mesh_.geometries = geometries;
    target_.summary.addSkipped("empty element blocks", empty);
    target_.summary.addSkipped("element blocks of other types", unknown);
}

ExodusPart ExodusMeshImporter::addPart(std::size_t blockIndex, int dimension) {
    const auto& block = file_.blocks()[blockIndex];
    const auto geometry =
        target_.share.hasShapes ? target_.shapes.addShape(1, blockName(block), blockIndex) : 0;
    return {&block, blockIndex, dimension, geometry};
}

void ExodusMeshImporter::addNodes() {
    const auto count = file_.counts().num_nodes;
    if (mesh_.parts.empty()) {
        target_.summary.addSkipped("nodes, since there is no element block to hold them", count);
        return;
    }
    if (!target_.share.hasMesh()) {
        return;
    }
    RealTable coordinates(static_cast<std::size_t>(count), 3);
    for (int axis = 0; axis < file_.dimension(); ++axis) {
        coordinates.setColumn(static_cast<std::size_t>(axis), file_.coordinates(axis), target_.narrowing);
    }
    target_.datasets.writeReals(DatasetNames::Coordinates, DatasetType::Coordinates, coordinates,
                                mesh_.geometries, {});
    target_.datasets.writeIntegers(
        DatasetType::NodeIds, target_.limits.narrowIds(file_.idMap(EX_NODE_MAP, count)), mesh_.geometries);
    target_.summary.nodes = count;
}

void ExodusMeshImporter::addAllElements() {
    if (!target_.share.hasMesh()) {
        return;
    }
    const auto ids = file_.idMap(EX_ELEM_MAP, file_.counts().num_elem);
    for (const auto& part : mesh_.parts) {
        const auto first = static_cast<std::size_t>(part.block->firstElement);
        addElements(part, std::span(ids).subspan(first, static_cast<std::size_t>(part.block->elementCount)));
    }
}

void ExodusMeshImporter::addElements(const ExodusPart& part, std::span<const std::int64_t> ids) {
    const auto& block = *part.block;
    target_.shapes.addElements(part.geometry, {part.dimension, readConnectivity(block), readPolylength(block),
                                               target_.limits.narrowIds(ids), blockAttributes(block)});
}

std::vector<unsigned int> ExodusMeshImporter::readPolylength(const ExodusBlock& block) const {
    if (!ElementType(block.elementType).isNsided()) {
        return std::vector<unsigned int>(static_cast<std::size_t>(block.elementCount),
                                         static_cast<unsigned int>(block.nodesPerElement));
    }
    const auto counts = file_.nodesOfEachElement(block);
    return {counts.begin(), counts.end()};
}

std::vector<unsigned int> ExodusMeshImporter::readConnectivity(const ExodusBlock& block) const {
    const auto nodes = file_.connectivity(block);
    std::vector<unsigned int> indices;
    indices.reserve(nodes.size());
    for (const auto node : nodes) {
        if (node < 1 || node > file_.counts().num_nodes) {
            throw Failure(file_.path(),
                          fmt::format("damaged: {} refers to node {} of {}", visibleText(blockName(block)),
                                      node, file_.counts().num_nodes));
        }
        indices.push_back(static_cast<unsigned int>(node - 1));
    }
    return indices;
}

} // namespace MoxTool
