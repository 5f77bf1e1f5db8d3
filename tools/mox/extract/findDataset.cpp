#include "findDataset.h"

#include "../common/NodePaths.h"
#include "../common/StepFilter.h"
#include "../common/datasetText.h"
#include "../common/geometryOf.h"
#include "../common/stepText.h"
#include "../common/visibleText.h"

#include <fmt/format.h>

#include <set>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

constexpr std::size_t MostNamesListed = 10;

const Node& chosenNode(const NumberFile& file, const NodePaths& paths, const DatasetChoice& choice) {
    const auto& model = file.model();
    if (choice.id > model.nodes().size()) {
        throw Failure(file.path(), fmt::format("has no node {}; mox tree shows all ids", choice.id));
    }
    if (choice.id != 0) {
        return model.node(choice.id);
    }
    if (const auto* node = paths.find(choice.path)) {
        return *node;
    }
    throw Failure(file.path(), paths.whyNone(choice.path));
}

const Node& chosenGeometry(const NumberFile& file, const NodePaths& paths, const DatasetChoice& choice) {
    const auto& node = chosenNode(file, paths, choice);
    if (const auto* geometry = geometryOf(file.model(), node)) {
        return *geometry;
    }
    throw Failure(file.path(),
                  fmt::format("{} has no datasets; name a shape or its geometry", paths.of(node.id)));
}

std::string chosenStep(const NumberFile& file, const DatasetChoice& choice) {
    const auto names = StepFilter(choice.step, file.model(), file.path()).names();
    if (names.size() > 1) {
        throw Failure(file.path(),
                      fmt::format("\"{}\" names {} steps; name one, or extract the datasets of all "
                                  "of them with --all",
                                  visibleText(choice.step.text), names.size()));
    }
    return names.empty() ? "" : *names.begin();
}

std::string quoted(const std::string& name) {
    return fmt::format("\"{}\"", visibleText(name));
}

// Lists each text once, in the order of the datasets, and stops when the list gets long.
template <typename TextOf>
std::string listOf(const std::vector<Dataset>& datasets, TextOf textOf) {
    std::set<std::string> listed;
    std::string list;
    for (const auto& dataset : datasets) {
        const std::string text = textOf(dataset);
        if (text.empty() || !listed.insert(text).second) {
            continue;
        }
        if (listed.size() > MostNamesListed) {
            return list + " and more";
        }
        list += (list.empty() ? "" : ", ") + text;
    }
    return list;
}

std::string whatThereIs(const std::vector<Dataset>& datasets, const std::string& name,
                        const ModelSteps& steps) {
    const auto list = listOf(datasets, [&](const Dataset& each) {
        const auto place = steps.find(each.step);
        return each.name == name && place ? stepText(steps, *place) : "";
    });
    if (!list.empty()) {
        return "it has the steps " + list + " (option --step)";
    }
    const auto names = listOf(datasets, [](const Dataset& each) { return quoted(each.name); });
    return names.empty() ? "the node has no datasets" : "the node has " + names;
}

} // namespace

const Dataset& findDataset(const NumberFile& file, const DatasetChoice& choice) {
    const auto step = chosenStep(file, choice);
    const NodePaths paths(file.model().nodes());
    const auto& geometry = chosenGeometry(file, paths, choice);
    const auto& datasets = geometry.geometry()->datasets;
    for (const auto& dataset : datasets) {
        if (dataset.name == choice.name && dataset.step == step) {
            return dataset;
        }
    }
    const ModelSteps steps(file.model());
    const auto place = steps.find(step);
    const auto asked = place ? "of step " + stepText(steps, *place) : "without a step";
    throw Failure(file.path(),
                  fmt::format("{} has no dataset {} {}; {}", paths.of(geometry.id), quoted(choice.name),
                              asked, whatThereIs(datasets, choice.name, steps)));
}

} // namespace MoxTool
