#include "CgnsResultImporter.h"

#include "../../common/Terminal.h"
#include "../model/componentAttributes.h"
#include "../model/makeStep.h"
#include "../model/noteRenamed.h"

#include <algorithm>
#include <set>
#include <utility>

namespace MoxTool {

namespace {

DatasetWriter::Ids geometriesOf(const std::vector<CgnsPart>& parts) {
    std::vector<unsigned int> geometries;
    for (const auto& part : parts) {
        if (part.geometry != 0) {
            geometries.push_back(part.geometry);
        }
    }
    return geometries;
}

std::vector<unsigned int> cellsOf(const std::vector<CgnsPart>& parts) {
    std::vector<unsigned int> cells;
    for (const auto& part : parts) {
        if (part.hasCells) {
            cells.insert(cells.end(), part.ids.begin(), part.ids.end());
        }
    }
    std::sort(cells.begin(), cells.end());
    return cells;
}

std::vector<const CgnsSolution*> named(const std::vector<CgnsSolution>& solutions,
                                       const std::vector<std::string>& names) {
    std::vector<const CgnsSolution*> found;
    for (const auto& solution : solutions) {
        if (std::find(names.begin(), names.end(), solution.name) != names.end()) {
            found.push_back(&solution);
        }
    }
    return found;
}

std::vector<const CgnsSolution*> withoutStep(const std::vector<CgnsSolution>& solutions,
                                             const std::vector<std::vector<std::string>>& steps) {
    std::set<std::string> stepped;
    for (const auto& names : steps) {
        stepped.insert(names.begin(), names.end());
    }
    std::vector<const CgnsSolution*> found;
    for (const auto& solution : solutions) {
        if (!stepped.contains(solution.name)) {
            found.push_back(&solution);
        }
    }
    return found;
}

} // namespace

void CgnsResultImporter::addZone(const CgnsBase& base, const CgnsZone& source, std::vector<CgnsPart> parts) {
    auto cells = cellsOf(parts);
    Zone zone{source, std::move(parts), std::move(cells), file_.solutions(source),
              file_.solutionsOfSteps(source)};
    askForFields(zone.solutions);
    std::erase_if(zone.solutions, [&](const auto& solution) { return !canTake(zone, solution); });
    zone.steps.resize(std::min(zone.steps.size(), base.times.size()));
    addStep(base, zone, withoutStep(zone.solutions, zone.steps), {});
    std::int64_t steps = 0;
    for (std::size_t step = 0; step < zone.steps.size(); ++step) {
        steps += target_.choices.steps.takes(step) ? 1 : 0;
    }
    target_.summary.steps = std::max(target_.summary.steps, steps);
    zones_.push_back(std::move(zone));
}

// A choice must have seen the fields of all steps, of those left out as well.
void CgnsResultImporter::askForFields(const std::vector<CgnsSolution>& solutions) {
    for (const auto& solution : solutions) {
        for (const auto& field : solution.fields) {
            target_.choices.variables.takes(field);
        }
    }
}

void CgnsResultImporter::addSteps(const CgnsBase& base) {
    for (std::size_t step = 0; step < base.times.size(); ++step) {
        target_.terminal.progress("importing steps",
                                  static_cast<double>(step) / static_cast<double>(base.times.size()));
        for (const auto& zone : zones_) {
            if (target_.choices.steps.takes(step) && step < zone.steps.size()) {
                addStep(base, zone, named(zone.solutions, zone.steps[step]),
                        makeStep(step, base.times[step], std::nullopt));
            }
        }
    }
    zones_.clear();
}

bool CgnsResultImporter::canTake(const Zone& zone, const CgnsSolution& solution) {
    const bool isOnVertices = solution.location == CGNS_ENUMV(Vertex);
    if (solution.isPartial || (!isOnVertices && solution.location != CGNS_ENUMV(CellCenter))) {
        elsewhere_.push_back(solution.name);
        return false;
    }
    if (!isOnVertices && zone.cells.size() != zone.source.cells()) {
        withoutCells_.push_back(solution.name);
        return false;
    }
    return true;
}

void CgnsResultImporter::addStep(const CgnsBase& base, const Zone& zone, const Solutions& solutions,
                                 const Qel::Mox2::Step& step) {
    ResultPlan plan(base.physicalDimension);
    const auto onVertices = fieldsAt(CGNS_ENUMV(Vertex), solutions);
    const auto vertexResults = plan.nodeResults(onVertices.names);
    for (const auto& result : vertexResults) {
        addOnVertices(zone, onVertices, result, step);
    }
    const auto onCells = fieldsAt(CGNS_ENUMV(CellCenter), solutions);
    const auto cellResults = plan.elementResults(onCells.names);
    for (const auto& result : cellResults) {
        addOnCells(zone, onCells, result, step);
    }
    noteRenamed(vertexResults, target_.summary);
    noteRenamed(cellResults, target_.summary);
}

CgnsResultImporter::Fields CgnsResultImporter::fieldsAt(CGNS_ENUMT(GridLocation_t) location,
                                                        const Solutions& solutions) {
    Fields fields;
    for (const auto* solution : solutions) {
        if (solution->location != location) {
            continue;
        }
        for (const auto& field : solution->fields) {
            if (target_.choices.variables.takes(field)) {
                fields.names.push_back(field);
                fields.solutions.push_back(solution);
            }
        }
    }
    return fields;
}

std::vector<std::vector<double>> CgnsResultImporter::readColumns(const Zone& zone, const Fields& fields,
                                                                 const ResultDataset& result) const {
    std::vector<std::vector<double>> columns;
    for (const auto variable : result.variables) {
        columns.push_back(file_.field(zone.source, *fields.solutions[variable], fields.names[variable]));
    }
    return columns;
}

void CgnsResultImporter::addOnVertices(const Zone& zone, const Fields& fields, const ResultDataset& result,
                                       const Qel::Mox2::Step& step) {
    const auto geometries = geometriesOf(zone.parts);
    if (geometries.size() == 0) {
        return;
    }
    const auto columns = readColumns(zone, fields, result);
    RealTable table(zone.source.vertices(), result.width);
    for (std::size_t column = 0; column < columns.size(); ++column) {
        table.setColumn(column, columns[column], target_.narrowing);
    }
    target_.datasets.writeReals(result.name, result.type, table, geometries, step,
                                componentAttributes(result, fields.names));
}

void CgnsResultImporter::addOnCells(const Zone& zone, const Fields& fields, const ResultDataset& result,
                                    const Qel::Mox2::Step& step) {
    const auto columns = readColumns(zone, fields, result);
    for (const auto& part : zone.parts) {
        if (!part.hasCells || part.geometry == 0) {
            continue;
        }
        RealTable table(part.ids.size(), result.width);
        std::vector<double> values(part.ids.size());
        for (std::size_t column = 0; column < columns.size(); ++column) {
            std::transform(part.ids.begin(), part.ids.end(), values.begin(), [&](unsigned int id) {
                const auto cell =
                    std::lower_bound(zone.cells.begin(), zone.cells.end(), id) - zone.cells.begin();
                return columns[column][static_cast<std::size_t>(cell)];
            });
            table.setColumn(column, values, target_.narrowing);
        }
        target_.datasets.writeReals(result.name, result.type, table, DatasetWriter::Ids(1, part.geometry),
                                    step, componentAttributes(result, fields.names));
    }
}

void CgnsResultImporter::listSkipped() {
    target_.summary.addSkipped("solutions elsewhere than on all vertices or all cell centres", elsewhere_);
    target_.summary.addSkipped("solutions on cells, since the zone's elements are not its cells",
                               withoutCells_);
}

} // namespace MoxTool
