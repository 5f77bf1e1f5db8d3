#include "ExodusResultImporter.h"

#include "../../common/Terminal.h"
#include "../model/ModeVariables.h"
#include "../model/componentAttributes.h"
#include "../model/makeStep.h"
#include "../model/noteRenamed.h"

#include <fmt/core.h>

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

ExodusResultImporter::ExodusResultImporter(const ExodusFile& input, const ExodusMesh& shapes,
                                           ImportTarget& output)
    : file(input),
      mesh(shapes),
      target(output),
      nodeVariables(file.variableNames(EX_NODAL)),
      elementVariables(file.variableNames(EX_ELEM_BLOCK)),
      globalVariables(file.variableNames(EX_GLOBAL)) {}

void ExodusResultImporter::run() {
    planBatches();
    for (std::size_t step = 0; step < file.times().size(); ++step) {
        target.terminal.progress("importing results",
                                 static_cast<double>(step) / static_cast<double>(file.times().size()));
        addStep(step);
    }
    target.terminal.clearProgress();
    target.summary.steps = static_cast<std::int64_t>(file.times().size());
}

void ExodusResultImporter::planBatches() {
    const auto plan = planNodes();
    const auto truthTable = file.elementTruthTable(elementVariables.size());
    for (const auto& part : mesh.parts) {
        planElements(part, truthTable, plan);
    }
    for (const auto& batch : batches) {
        noteRenamed(batch.results, target.summary);
    }
    listUnused(truthTable);
}

// Lists names without numbers.
void ExodusResultImporter::listUnused(const std::vector<int>& truthTable) {
    std::vector<std::string> unused;
    for (std::size_t variable = 0; variable < elementVariables.size(); ++variable) {
        bool isUsed = false;
        for (auto cell = variable; cell < truthTable.size(); cell += elementVariables.size()) {
            isUsed = isUsed || truthTable[cell] != 0;
        }
        if (!isUsed) {
            unused.push_back(elementVariables[variable]);
        }
    }
    target.summary.addSkipped("element variables that no block has", unused);
    if (mesh.parts.empty() || file.times().empty()) {
        target.summary.addSkipped("nodal variables, since there are no element blocks or no steps",
                                  nodeVariables);
    }
    if (file.times().empty()) {
        target.summary.addSkipped("element variables, since there are no steps", elementVariables);
    }
}

ResultPlan ExodusResultImporter::planNodes() {
    ResultPlan plan(file.dimension());
    if (mesh.parts.empty()) {
        return plan;
    }
    batches.push_back(
        {EX_NODAL, 1, file.counts().num_nodes, mesh.geometries, plan.nodeResults(nodeVariables)});
    return plan;
}

void ExodusResultImporter::planElements(const ExodusPart& part, const std::vector<int>& truthTable,
                                        ResultPlan plan) {
    std::vector<std::size_t> places;
    std::vector<std::string> names;
    for (std::size_t variable = 0; variable < elementVariables.size(); ++variable) {
        if (truthTable[part.blockIndex * elementVariables.size() + variable] == 0) {
            continue;
        }
        places.push_back(variable);
        names.push_back(elementVariables[variable]);
    }
    auto results = plan.elementResults(names);
    translate(results, places);
    batches.push_back({EX_ELEM_BLOCK, part.block->id, part.block->elementCount,
                       DatasetWriter::Ids(1, part.geometry), std::move(results)});
}

void ExodusResultImporter::addStep(std::size_t step) {
    const auto label = describeStep(step);
    for (const auto& batch : batches) {
        for (const auto& result : batch.results) {
            addResult(batch, result, step, label);
        }
    }
}

Qel::Mox2::Step ExodusResultImporter::describeStep(std::size_t step) const {
    const auto variables = findModeVariables(globalVariables);
    if (!variables) {
        return makeStep(step, file.times()[step], std::nullopt);
    }
    const auto values = file.globalValues(step, globalVariables.size());
    return makeStep(step, file.times()[step], Mode{values[variables->number], values[variables->frequency]});
}

void ExodusResultImporter::addResult(const Batch& batch, const ResultDataset& result, std::size_t step,
                                     const Qel::Mox2::Step& label) {
    RealTable table(static_cast<std::size_t>(batch.rows), result.width);
    for (std::size_t column = 0; column < result.variables.size(); ++column) {
        const auto values = file.values(batch.type, result.variables[column], batch.entity, step, batch.rows);
        table.setColumn(column, values, target.narrowing);
    }
    target.datasets.writeReals(result.name, result.type, table, batch.geometries, label,
                               componentAttributes(result, variablesOf(batch.type)));
}

const std::vector<std::string>& ExodusResultImporter::variablesOf(ex_entity_type type) const {
    return type == EX_NODAL ? nodeVariables : elementVariables;
}

} // namespace MoxTool
