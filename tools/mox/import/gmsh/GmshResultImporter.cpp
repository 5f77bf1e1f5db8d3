#include "GmshResultImporter.h"

#include "../../common/Terminal.h"
#include "../model/componentAttributes.h"
#include "../model/makeStep.h"
#include "../model/noteRenamed.h"

#include <fmt/core.h>

#include <array>
#include <limits>
#include <list>
#include <set>

namespace MoxTool {

namespace {

constexpr std::array<const char*, 3> VectorParts = {"x", "y", "z"};
constexpr std::array<const char*, 9> TensorParts = {"xx", "xy", "xz", "yx", "yy", "yz", "zx", "zy", "zz"};

// Components of a tensor that equal each other in a symmetric one.
constexpr std::array<std::pair<std::size_t, std::size_t>, 3> MirroredParts = {{{1, 3}, {2, 6}, {5, 7}}};

bool isSymmetric(const GmshViewStep& tensor) {
    for (std::size_t first = 0; first + TensorParts.size() <= tensor.values.size();
         first += TensorParts.size()) {
        for (const auto& [upper, lower] : MirroredParts) {
            if (tensor.values[first + upper] != tensor.values[first + lower]) {
                return false;
            }
        }
    }
    return true;
}

bool isMirrored(std::size_t component) {
    return component == 2 || component == 3 || component == 7; // xz, yx, zy
}

std::string variableName(const std::string& view, std::size_t components, std::size_t component) {
    if (components == 1) {
        return view;
    }
    if (components == VectorParts.size()) {
        return fmt::format("{}_{}", view, VectorParts[component]);
    }
    if (components == TensorParts.size()) {
        return fmt::format("{}_{}", view, TensorParts[component]);
    }
    return fmt::format("{}_{}", view, component + 1);
}

} // namespace

GmshResultImporter::GmshResultImporter(const GmshModel& source, const TagIndex& nodes, std::size_t nodeCount,
                                       const std::vector<GmshPart>& parts, ImportTarget& target)
    : source_(source),
      nodes_(nodes),
      nodeCount_(nodeCount),
      parts_(parts),
      target_(target),
      views_(source.views()) {}

void GmshResultImporter::run() {
    std::size_t number = 0;
    const auto steps = findSteps();
    std::vector<double> times;
    for (const auto& [key, stepViews] : steps) {
        times.push_back(key.second);
    }
    target_.choices.steps.resolve(stepsAt(times));
    for (const auto& [key, stepViews] : steps) {
        target_.terminal.progress("importing results",
                                  static_cast<double>(number) / static_cast<double>(steps.size()));
        if (target_.choices.steps.takes(number)) {
            addStep(stepViews, key.first, makeStep(number, key.second, std::nullopt));
            ++target_.summary.steps;
        }
        ++number;
    }
    target_.terminal.clearProgress();
}

std::map<GmshResultImporter::StepKey, std::vector<const GmshView*>> GmshResultImporter::findSteps() {
    std::map<StepKey, std::vector<const GmshView*>> steps;
    std::set<std::string> others;
    for (const auto& view : views_) {
        const bool isChosen = target_.choices.variables.takes(view.name);
        for (int place = 0; place < view.steps; ++place) {
            const auto data = source_.viewStep(view, place);
            if (!data) {
                continue;
            }
            if (data->kind == "NodeData" || data->kind == "ElementData") {
                steps[{place, data->time}].push_back(&view);
            } else if (isChosen) {
                others.insert(view.name);
            }
        }
    }
    target_.summary.addSkipped("views on the nodes of elements", {others.begin(), others.end()});
    return steps;
}

void GmshResultImporter::addStep(const std::vector<const GmshView*>& stepViews, int place,
                                 const Qel::Mox2::Step& step) {
    std::list<GmshViewStep> data;
    Variables onNodes;
    Variables onElements;
    for (const auto* view : stepViews) {
        if (!target_.choices.variables.takes(view->name)) {
            continue;
        }
        data.push_back(*source_.viewStep(*view, place));
        addVariables(view->name, data.back(), data.back().kind == "NodeData" ? onNodes : onElements);
    }
    ResultPlan plan(3);
    const auto nodeResults = plan.nodeResults(onNodes.names);
    for (const auto& result : nodeResults) {
        addOnNodes(result, onNodes, step);
    }
    const auto elementResults = plan.elementResults(onElements.names);
    for (const auto& result : elementResults) {
        addOnElements(result, onElements, step);
    }
    noteRenamed(nodeResults, target_.summary);
    noteRenamed(elementResults, target_.summary);
}

void GmshResultImporter::addVariables(const std::string& name, const GmshViewStep& data,
                                      Variables& variables) {
    const bool isHalf = data.components == TensorParts.size() && isSymmetric(data);
    for (std::size_t component = 0; component < data.components; ++component) {
        if (isHalf && isMirrored(component)) {
            continue;
        }
        variables.names.push_back(variableName(name, data.components, component));
        variables.all.push_back({&data, component});
    }
}

void GmshResultImporter::addOnNodes(const ResultDataset& result, const Variables& variables,
                                    const Qel::Mox2::Step& step) {
    RealTable table(nodeCount_, result.width);
    for (std::size_t place = 0; place < result.variables.size(); ++place) {
        const auto [values, found] = column(variables.all[result.variables[place]], nodes_, nodeCount_);
        table.setColumn(place, values, target_.narrowing);
        if (found < nodeCount_) {
            noteGaps(result);
        }
    }
    std::vector<unsigned int> geometries;
    for (const auto& part : parts_) {
        geometries.push_back(part.geometry);
    }
    target_.datasets.writeReals(result.name, result.type, table, geometries, step,
                                componentAttributes(result, variables.names));
}

void GmshResultImporter::addOnElements(const ResultDataset& result, const Variables& variables,
                                       const Qel::Mox2::Step& step) {
    for (const auto& part : parts_) {
        RealTable table(part.elementCount, result.width);
        std::size_t most = 0;
        std::size_t least = part.elementCount;
        for (std::size_t place = 0; place < result.variables.size(); ++place) {
            const auto [values, found] =
                column(variables.all[result.variables[place]], part.elements, part.elementCount);
            table.setColumn(place, values, target_.narrowing);
            most = std::max(most, found);
            least = std::min(least, found);
        }
        if (most == 0) {
            continue;
        }
        if (least < part.elementCount) {
            noteGaps(result);
        }
        target_.datasets.writeReals(result.name, result.type, table, DatasetWriter::Ids(1, part.geometry),
                                    step, componentAttributes(result, variables.names));
    }
}

std::pair<std::vector<double>, std::size_t>
GmshResultImporter::column(const Variable& variable, const TagIndex& index, std::size_t count) {
    std::vector<double> values(count, std::numeric_limits<double>::quiet_NaN());
    const auto& data = *variable.data;
    std::size_t found = 0;
    for (std::size_t row = 0; row < data.tags.size(); ++row) {
        const auto place = index.find(data.tags[row]);
        if (!place) {
            continue;
        }
        values[*place] = data.values[row * data.components + variable.component];
        ++found;
    }
    return {values, found};
}

void GmshResultImporter::noteGaps(const ResultDataset& result) {
    target_.summary.addNote(fmt::format(
        "\"{}\" has no value on some nodes or elements; they are not-a-number there", result.name));
}

} // namespace MoxTool
