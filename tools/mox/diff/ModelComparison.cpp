#include "ModelComparison.h"

#include "../common/Failure.h"
#include "../common/WorkLimit.h"
#include "../common/datasetText.h"
#include "compareProperties.h"
#include "matchInOrder.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Model;
using MoxReader::Node;

std::vector<std::string_view> childNames(const Model& model, const Node& node) {
    std::vector<std::string_view> names;
    for (const auto id : model.children(node.id)) {
        names.push_back(model.node(id).name);
    }
    return names;
}

const Node& childAt(const Model& model, const Node& node, std::size_t place) {
    return model.node(model.children(node.id)[place]);
}

std::vector<const Dataset*> chosenOf(const Node& geometry, const StepFilter& steps) {
    std::vector<const Dataset*> chosen;
    for (const auto& dataset : geometry.geometry()->datasets) {
        if (dataset.step.empty() || steps.takes(dataset)) {
            chosen.push_back(&dataset);
        }
    }
    return chosen;
}

std::vector<std::string_view> keysOf(const std::vector<const Dataset*>& datasets) {
    std::vector<std::string_view> keys;
    for (const auto* dataset : datasets) {
        keys.push_back(dataset->key);
    }
    return keys;
}

std::string description(const Dataset& holder) {
    return fmt::format("{}, {}", elementTypeText(holder), shapeText(holder));
}

// A link whose entry has attributes of its own is rare; usually they are with the numbers.
const MoxReader::Attributes& attributesOf(const Dataset& dataset, const Dataset& holder) {
    return dataset.attributes.empty() ? holder.attributes : dataset.attributes;
}

using PathForm = std::string (NodePaths::*)(std::uint32_t) const;

// Only for links that lead to a holder, so that their targets are known to exist.
std::optional<Json> linkTarget(const Model& model, const NodePaths& paths, const Dataset& dataset,
                               PathForm form) {
    if (!dataset.isLink) {
        return std::nullopt;
    }
    const auto& target = model.node(dataset.linkNodeId).geometry()->datasets[dataset.linkIndex];
    return Json{{"node", (paths.*form)(dataset.linkNodeId)},
                {"dataset", jsonText(target.name)},
                {"step", jsonText(target.step)}};
}

} // namespace

ModelComparison::ModelComparison(NumberFile& fileA, NumberFile& fileB, const ComparisonOptions& options,
                                 Terminal& messages)
    : fileA_(fileA),
      fileB_(fileB),
      stepsA_(options.steps, fileA.model(), fileA.path()),
      stepsB_(options.steps, fileB.model(), fileB.path()),
      options_(options),
      messages_(messages),
      pathsA_(fileA.model().nodes()),
      pathsB_(fileB.model().nodes()),
      list_(options.tolerance) {}

std::vector<Difference> ModelComparison::run() {
    compareSaves(list_, fileA_.model().globalInformation(), fileB_.model().globalInformation(),
                 options_.date);
    list_.moveTo(&fileA_.model().root(), &fileB_.model().root());
    list_.compareTexts("name", fileA_.model().root().name, fileB_.model().root().name);
    compareTrees();
    compareNumbersOfAll();
    return list_.take();
}

// Uses a stack of its own, since a file can nest nodes deeper than calls can.
void ModelComparison::compareTrees() {
    std::vector<NodePair> waiting = {{&fileA_.model().root(), &fileB_.model().root()}};
    while (!waiting.empty()) {
        const auto [a, b] = waiting.back();
        waiting.pop_back();
        compareNodes(*a, *b);
        const auto children = matchChildren(*a, *b);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
}

void ModelComparison::compareNodes(const Node& a, const Node& b) {
    list_.moveTo(&a, &b);
    list_.compareTexts("type", a.typeName, b.typeName);
    if (a.typeName == b.typeName) {
        compareContents(a, b);
    }
}

std::vector<ModelComparison::NodePair> ModelComparison::matchChildren(const Node& a, const Node& b) {
    const auto& modelA = fileA_.model();
    const auto& modelB = fileB_.model();
    std::vector<NodePair> pairs;
    for (const auto& match : matchInOrder(childNames(modelA, a), childNames(modelB, b))) {
        const auto* childA = match.a ? &childAt(modelA, a, *match.a) : nullptr;
        const auto* childB = match.b ? &childAt(modelB, b, *match.b) : nullptr;
        list_.moveTo(childA, childB);
        if (childB == nullptr) {
            list_.add("node", jsonText(childA->typeName), std::nullopt);
        } else if (childA == nullptr) {
            list_.add("node", std::nullopt, jsonText(childB->typeName));
        } else {
            pairs.emplace_back(childA, childB);
        }
    }
    return pairs;
}

void ModelComparison::compareContents(const Node& a, const Node& b) {
    if (a.group() != nullptr) {
        compareGroups(list_, *a.group(), *b.group());
    } else if (a.shape() != nullptr) {
        compareMaterials(list_, a.shape()->material, b.shape()->material);
    } else if (a.nodeSets() != nullptr) {
        compareNodeSets(list_, fileA_.readSets(*a.nodeSets()), fileB_.readSets(*b.nodeSets()));
    } else if (a.geometry() != nullptr) {
        compareGeometries(a, b);
    }
}

void ModelComparison::compareGeometries(const Node& a, const Node& b) {
    const auto inA = chosenOf(a, stepsA_);
    const auto inB = chosenOf(b, stepsB_);
    for (const auto& match : matchInOrder(keysOf(inA), keysOf(inB))) {
        list_.moveTo(&a, &b, match.a ? inA[*match.a] : inB[*match.b]);
        if (!match.b) {
            list_.add("dataset", description(fileA_.holder(*inA[*match.a])), std::nullopt);
        } else if (!match.a) {
            list_.add("dataset", std::nullopt, description(fileB_.holder(*inB[*match.b])));
        } else {
            compareDatasets(*inA[*match.a], *inB[*match.b]);
        }
    }
}

void ModelComparison::compareDatasets(const Dataset& a, const Dataset& b) {
    const auto& holderA = fileA_.holder(a);
    const auto& holderB = fileB_.holder(b);
    list_.compareTexts("type", variableTypeText(a), variableTypeText(b));
    list_.compareFlags("vibration", a.vibration, b.vibration);
    if (options_.links) {
        compareLinks(a, b);
    }
    list_.compareAttributes(attributesOf(a, holderA), attributesOf(b, holderB));
    compareHolders(holderA, holderB);
}

// Compares names alone, since a path can have an id.
void ModelComparison::compareLinks(const Dataset& a, const Dataset& b) {
    const auto targetA = [&](PathForm form) { return linkTarget(fileA_.model(), pathsA_, a, form); };
    const auto targetB = [&](PathForm form) { return linkTarget(fileB_.model(), pathsB_, b, form); };
    if (targetA(&NodePaths::namesTo) != targetB(&NodePaths::namesTo)) {
        list_.add("link", targetA(&NodePaths::of), targetB(&NodePaths::of));
    }
}

void ModelComparison::compareHolders(const Dataset& a, const Dataset& b) {
    list_.compareTexts("element type", elementTypeText(a), elementTypeText(b));
    list_.compareTexts("shape", shapeText(a), shapeText(b));
    if (a.elementTag == b.elementTag && a.width == b.width && itemCount(a) == itemCount(b)) {
        tasks_.push_back({&a, &b, list_.keepRoomForNumbers()});
    }
}

// Numbers that many datasets share are compared once.
void ModelComparison::compareNumbersOfAll() {
    sortTasks();
    requireBoundedWork();
    const Task* last = nullptr;
    std::optional<NumberDifference> difference;
    for (const auto& task : tasks_) {
        messages_.progress("comparing",
                           static_cast<double>(&task - tasks_.data()) / static_cast<double>(tasks_.size()));
        if (last == nullptr || !task.hasSameNumbersAs(*last)) {
            difference =
                compareNumbers(fileA_.read(*task.a), fileB_.read(*task.b), task.a->width, options_.tolerance);
        }
        if (difference) {
            list_.fill(task.room, *difference);
        }
        last = &task;
    }
    messages_.clearProgress();
}

// With this order each block of the first file is decompressed once and, for each of them, each block of the
// second file once, in whatever order the two were written.
void ModelComparison::sortTasks() {
    std::ranges::stable_sort(tasks_, {}, [this](const Task& task) {
        return std::tuple(fileA_.blockOf(*task.a), task.b->position, task.b->nodeId, task.b->index,
                          task.a->nodeId, task.a->index);
    });
}

// Where both files share numbers, but not in the same way, a dataset is read once for each partner.
// Meaningful models stay far below this limit; files made for the purpose could pair everything with
// everything.
void ModelComparison::requireBoundedWork() const {
    std::uint64_t bytes = 0;
    const Task* last = nullptr;
    for (const auto& task : tasks_) {
        if (last == nullptr || !task.hasSameNumbersAs(*last)) {
            bytes += task.a->sizeInBytes;
        }
        last = &task;
    }
    const WorkLimit limit(fileB_.path(), fileA_.fileSize() + fileB_.fileSize(), options_.noLimit);
    if (!limit.allows(bytes)) {
        throw Failure(fileB_.path(),
                      fmt::format("its links pair its numbers with those of {} in too many ways to "
                                  "compare them all; {} goes on all the same",
                                  fileA_.path(), WorkLimit::Option));
    }
}

} // namespace MoxTool
