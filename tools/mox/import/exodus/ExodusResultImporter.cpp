#include "ExodusResultImporter.h"

#include "../../common/Terminal.h"
#include "../model/ModeVariables.h"
#include "../model/componentAttributes.h"
#include "../model/makeStep.h"
#include "../model/noteRenamed.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace MoxTool {

namespace {

// Turns places in a part of a list into places in the whole list.
void translate(std::vector<ResultDataset>& results, const std::vector<std::size_t>& places) {
    for (auto& result : results) {
        for (auto& variable : result.variables) {
            variable = places[variable];
        }
    }
}

} // namespace

ExodusResultImporter::ExodusResultImporter(const ExodusSource& file, const ExodusMesh& mesh,
                                           ImportTarget& target)
    : file_(file),
      mesh_(mesh),
      target_(target),
      nodeVariables_(file_.variableNames(EX_NODAL)),
      elementVariables_(file_.variableNames(EX_ELEM_BLOCK)),
      globalVariables_(file_.variableNames(EX_GLOBAL)) {}

void ExodusResultImporter::run() {
    planBatches();
    if (!file_.times().empty() && !hasResults()) {
        target_.summary.addNote("the steps have no results; their times are attributes of the root");
        return;
    }
    const auto steps = chosenSteps();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!target_.share.hasStep(i, steps.size())) {
            continue;
        }
        target_.terminal.progress("importing results",
                                  static_cast<double>(i) / static_cast<double>(steps.size()));
        addStep(steps[i]);
        ++target_.summary.steps;
    }
    target_.terminal.clearProgress();
}

std::vector<std::size_t> ExodusResultImporter::chosenSteps() const {
    std::vector<std::size_t> steps;
    for (std::size_t step = 0; step < file_.times().size(); ++step) {
        if (target_.choices.steps.takes(step)) {
            steps.push_back(step);
        }
    }
    return steps;
}

bool ExodusResultImporter::hasResults() const {
    return std::ranges::any_of(batches_,
                               [](const Batch& batch) { return batch.rows > 0 && !batch.results.empty(); });
}

void ExodusResultImporter::planBatches() {
    const auto plan = planNodes();
    const auto truthTable = file_.elementTruthTable(elementVariables_.size());
    for (const auto& part : mesh_.parts) {
        planElements(part, truthTable, plan);
    }
    for (const auto& batch : batches_) {
        noteRenamed(batch.results, target_.summary);
    }
    listUnused(truthTable);
}

// Lists names without numbers.
void ExodusResultImporter::listUnused(const std::vector<int>& truthTable) {
    std::vector<std::string> unused;
    for (std::size_t variable = 0; variable < elementVariables_.size(); ++variable) {
        bool isUsed = false;
        for (auto cell = variable; cell < truthTable.size(); cell += elementVariables_.size()) {
            isUsed = isUsed || truthTable[cell] != 0;
        }
        if (!isUsed && isChosen(elementVariables_[variable])) {
            unused.push_back(elementVariables_[variable]);
        }
    }
    target_.summary.addSkipped("element variables that no block has", unused);
    if (mesh_.parts.empty() || file_.times().empty()) {
        target_.summary.addSkipped("nodal variables, since there are no element blocks or no steps",
                                   chosenOf(nodeVariables_));
    }
    if (file_.times().empty()) {
        target_.summary.addSkipped("element variables, since there are no steps",
                                   chosenOf(elementVariables_));
    }
}

ResultPlan ExodusResultImporter::planNodes() {
    ResultPlan plan(file_.dimension());
    if (mesh_.parts.empty()) {
        return plan;
    }
    std::vector<std::size_t> places;
    for (std::size_t variable = 0; variable < nodeVariables_.size(); ++variable) {
        if (isChosen(nodeVariables_[variable])) {
            places.push_back(variable);
        }
    }
    auto results = plan.nodeResults(chosenOf(nodeVariables_));
    translate(results, places);
    batches_.push_back({EX_NODAL, 1, file_.counts().num_nodes, mesh_.geometries, std::move(results)});
    return plan;
}

bool ExodusResultImporter::isChosen(const std::string& variable) {
    return target_.choices.variables.takes(variable);
}

std::vector<std::string> ExodusResultImporter::chosenOf(const std::vector<std::string>& variables) {
    std::vector<std::string> chosen;
    std::ranges::copy_if(variables, std::back_inserter(chosen),
                         [this](const auto& variable) { return isChosen(variable); });
    return chosen;
}

void ExodusResultImporter::planElements(const ExodusPart& part, const std::vector<int>& truthTable,
                                        ResultPlan plan) {
    std::vector<std::size_t> places;
    std::vector<std::string> names;
    for (std::size_t variable = 0; variable < elementVariables_.size(); ++variable) {
        if (truthTable[part.blockIndex * elementVariables_.size() + variable] == 0 ||
            !isChosen(elementVariables_[variable])) {
            continue;
        }
        places.push_back(variable);
        names.push_back(elementVariables_[variable]);
    }
    auto results = plan.elementResults(names);
    translate(results, places);
    batches_.push_back({EX_ELEM_BLOCK, part.block->id, part.block->elementCount,
                        DatasetWriter::Ids(1, part.geometry), std::move(results)});
}

void ExodusResultImporter::addStep(std::size_t step) {
    const auto label = describeStep(step);
    for (const auto& batch : batches_) {
        for (const auto& result : batch.results) {
            addResult(batch, result, step, label);
        }
    }
}

Qel::Mox2::Step ExodusResultImporter::describeStep(std::size_t step) const {
    const auto variables = findModeVariables(globalVariables_);
    if (!variables) {
        return makeStep(step, file_.times()[step], std::nullopt);
    }
    const auto values = file_.globalValues(step, globalVariables_.size());
    return makeStep(step, file_.times()[step], Mode{values[variables->number], values[variables->frequency]});
}

void ExodusResultImporter::addResult(const Batch& batch, const ResultDataset& result, std::size_t step,
                                     const Qel::Mox2::Step& label) {
    RealTable table(static_cast<std::size_t>(batch.rows), result.width);
    for (std::size_t column = 0; column < result.variables.size(); ++column) {
        const auto values =
            file_.values(batch.type, result.variables[column], batch.entity, step, batch.rows);
        table.setColumn(column, values, target_.narrowing);
    }
    target_.datasets.writeReals(result.name, result.type, table, batch.geometries, label,
                                componentAttributes(result, variablesOf(batch.type)));
}

const std::vector<std::string>& ExodusResultImporter::variablesOf(ex_entity_type type) const {
    return type == EX_NODAL ? nodeVariables_ : elementVariables_;
}

} // namespace MoxTool
