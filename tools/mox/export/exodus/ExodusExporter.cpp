#include "ExodusExporter.h"

#include "../../common/Terminal.h"
#include "../../common/attributeValue.h"
#include "../../common/visibleText.h"
#include "../../mesh/AttributeNames.h"
#include "../../mesh/DatasetNames.h"
#include "../noteUnknownShapes.h"
#include "qaRecordsOf.h"

#include <fmt/core.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace MoxTool {

namespace {

constexpr double Missing = std::numeric_limits<double>::quiet_NaN();

const MoxReader::Attributes& rootAttributes(const MoxReader::Model& model) {
    static const MoxReader::Attributes none;
    const auto* group = model.root().group();
    return group == nullptr ? none : group->attributes;
}

std::string titleOf(const MoxReader::Model& model) {
    const auto& attributes = rootAttributes(model);
    return attributes.contains(AttributeNames::Title) ? textAttribute(attributes, AttributeNames::Title)
                                                      : model.root().name;
}

template <typename T>
std::vector<double> columnOf(const std::vector<T>& table, std::size_t width, std::size_t column) {
    std::vector<double> values;
    values.reserve(table.size() / width);
    for (auto i = column; i < table.size(); i += width) {
        values.push_back(table[i]);
    }
    return values;
}

bool areUnique(const std::vector<std::int64_t>& ids) {
    return std::set<std::int64_t>(ids.begin(), ids.end()).size() == ids.size();
}

// An import from a file of fewer dimensions fills the other coordinates with zeros.
int dimensionOf(const ExportModel& source) {
    const auto wish = numberAttribute(rootAttributes(source.model()), "Dimensions").value_or(3);
    if (wish != 1 && wish != 2) {
        return 3;
    }
    const auto dimension = static_cast<std::size_t>(wish);
    const auto& points = source.mesh().points;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i % 3 >= dimension && points[i] != 0) {
            return 3;
        }
    }
    return static_cast<int>(dimension);
}

bool isLarge(std::int64_t id) {
    return id > std::numeric_limits<std::int32_t>::max();
}

bool areLarge(const std::optional<std::vector<std::int64_t>>& ids) {
    return ids && std::any_of(ids->begin(), ids->end(), isLarge);
}

} // namespace

ExodusExporter::ExodusExporter(ExportModel& source, Terminal& terminal)
    : source_(source), terminal_(terminal), reader_(source.reader()), dimension_(dimensionOf(source)) {
    planMaps();
    nodal_.emplace(source_.results(), ResultPlace::Nodes, mapFields_, cutTexts_);
    elemental_.emplace(source_.results(), ResultPlace::Elements, mapFields_, cutTexts_);
    for (const auto step : source_.wantedSteps()) {
        const auto& label = source_.results().steps[step];
        hasModes_ = hasModes_ || (label.mode && label.frequency);
    }
}

void ExodusExporter::write(const std::string& path, const std::string& shownPath) {
    ExodusOutput output(path, shownPath, layout());
    writeMesh(output);
    declareVariables(output);
    if (source_.results().steps.empty()) {
        writeStaticStep(output);
    } else {
        writeSteps(output);
    }
    output.close();
    cutTexts_.addTo(source_.summary());
}

void ExodusExporter::planMaps() {
    nodeIds_ = takeIds(ResultPlace::Nodes, DatasetNames::NodeIds);
    elementIds_ = takeIds(ResultPlace::Elements, DatasetNames::ElementIds);
}

std::optional<ExodusExporter::Ids> ExodusExporter::takeIds(ResultPlace place, const std::string& name) {
    const auto& fields = source_.results().fields;
    const auto field = std::find_if(fields.begin(), fields.end(), [&](const ResultField& candidate) {
        return candidate.place == place && candidate.name == name && candidate.isStatic &&
               candidate.isInteger;
    });
    if (field == fields.end()) {
        return std::nullopt;
    }
    mapFields_.push_back(&*field);
    if (field->targets.size() < targetCount(source_.mesh(), place)) {
        source_.summary().addNote(name + " are left out, since some have none");
        return std::nullopt;
    }
    const auto numbers = reader_.readAll(*field, ResultField::NoStep);
    Ids ids(numbers.begin(), numbers.end());
    if (areUnique(ids)) {
        return ids;
    }
    source_.summary().addNote(name + " are left out, since some are not unique in the whole model");
    return std::nullopt;
}

ExodusOutput::Layout ExodusExporter::layout() {
    ExodusOutput::Layout layout;
    const auto& mesh = source_.mesh();
    layout.title = cutTexts_.cut(titleOf(source_.model()), ExodusOutput::LongestTitle, "titles");
    layout.dimension = dimension_;
    layout.nodes = mesh.nodeCount();
    layout.elements = mesh.elementCount();
    layout.blocks = mesh.blocks.size();
    layout.largeIds = areLarge(nodeIds_) || areLarge(elementIds_);
    auto names = nodal_->names();
    const auto more = elemental_->names();
    names.insert(names.end(), more.begin(), more.end());
    for (const auto& block : mesh.blocks) {
        names.push_back(block.name);
        layout.largeIds = layout.largeIds || isLarge(block.id);
    }
    for (const auto& name : names) {
        layout.nameLength = std::max(layout.nameLength, name.size());
    }
    return layout;
}

void ExodusExporter::writeMesh(ExodusOutput& output) {
    output.qaRecords(qaRecordsOf(rootAttributes(source_.model()), cutTexts_));
    writeCoordinates(output);
    std::map<std::string, std::size_t> unknown; // blocks of no known shape, by their type
    for (const auto& block : source_.mesh().blocks) {
        const auto described = describe(block);
        output.block(described, block.nodes, block.lengths);
        unknown[described.elementType] += block.shape == &UnknownShape ? 1 : 0;
    }
    for (const auto& [type, count] : unknown) {
        noteUnknownShapes(source_.summary(), count, "have the type " + visibleText(type));
    }
    if (nodeIds_) {
        output.idMap(EX_NODE_MAP, *nodeIds_);
    }
    if (elementIds_) {
        output.idMap(EX_ELEM_MAP, *elementIds_);
    }
}

ExodusBlock ExodusExporter::describe(const MeshBlock& block) {
    const auto* usualType = dimension_ < 3 ? block.shape->planarType : block.shape->exodusType;
    const auto nodes = block.shape == &PolygonShape ? block.nodes.size() : block.nodesPerElement;
    ExodusBlock described;
    described.id = block.id;
    described.elementType = cutTexts_.cut(block.type.empty() ? usualType : block.type,
                                          ExodusOutput::LongestText, "element types");
    described.name = cutTexts_.cut(block.name, ExodusOutput::LongestName, "names of blocks");
    described.elementCount = static_cast<std::int64_t>(block.rows.size());
    described.nodesPerElement = static_cast<std::int64_t>(nodes);
    return described;
}

void ExodusExporter::writeCoordinates(ExodusOutput& output) {
    const auto& points = source_.mesh().points;
    for (int axis = 0; axis < dimension_; ++axis) {
        output.coordinates(axis, columnOf(points, 3, static_cast<std::size_t>(axis)));
    }
}

void ExodusExporter::declareVariables(ExodusOutput& output) {
    if (hasModes_) {
        output.variables(EX_GLOBAL, {"ModeNumber", "EigenFrequency"});
    }
    output.variables(EX_NODAL, nodal_->names());
    output.variables(EX_ELEM_BLOCK, elemental_->names());
    std::vector<int> table;
    for (const auto& block : source_.mesh().blocks) {
        for (std::size_t variable = 0; variable < elemental_->count(); ++variable) {
            table.push_back(elemental_->targets(variable).contains(block.part) ? 1 : 0);
        }
    }
    output.truthTable(source_.mesh().blocks.size(), elemental_->count(), std::move(table));
}

void ExodusExporter::writeSteps(ExodusOutput& output) {
    const auto& steps = source_.wantedSteps();
    for (std::size_t row = 0; row < steps.size(); ++row) {
        terminal_.progress("exporting results", static_cast<double>(row) / static_cast<double>(steps.size()));
        const auto& step = source_.results().steps[steps[row]];
        output.time(row, step.timeOr(static_cast<double>(row)));
        writeGlobals(output, row, step);
        writeResults(output, ResultPlace::Nodes, row, steps[row]);
        writeResults(output, ResultPlace::Elements, row, steps[row]);
    }
    terminal_.clearProgress();
}

// An Exodus file has results only in steps.
void ExodusExporter::writeStaticStep(ExodusOutput& output) {
    if (nodal_->count() + elemental_->count() == 0) {
        writeBareTimes(output);
        return;
    }
    source_.summary().addNote("results without steps stand in one step of time 0");
    output.time(0, 0);
    source_.summary().steps = 1;
    writeResults(output, ResultPlace::Nodes, 0, ResultField::NoStep);
    writeResults(output, ResultPlace::Elements, 0, ResultField::NoStep);
}

// Writes the times that an import has kept of steps without results.
void ExodusExporter::writeBareTimes(ExodusOutput& output) {
    const auto& attributes = rootAttributes(source_.model());
    std::size_t row = 0;
    while (const auto time =
               numberAttribute(attributes, AttributeNames::numbered(AttributeNames::TimeOfStep, row + 1))) {
        output.time(row++, *time);
    }
    source_.summary().steps = static_cast<std::int64_t>(row);
}

void ExodusExporter::writeGlobals(ExodusOutput& output, std::size_t row, const ModelStep& step) {
    if (hasModes_) {
        output.globals(row, {step.mode.value_or(Missing), step.frequency.value_or(Missing)});
    }
}

void ExodusExporter::writeResults(ExodusOutput& output, ResultPlace place, std::size_t row,
                                  std::size_t step) {
    Written written;
    for (const auto& [field, variables] : variablesOf(place).fields()) {
        if (field->isStatic && step != ResultField::NoStep) {
            source_.summary().addNote("results without steps are repeated in each step");
        }
        for (const auto target : field->targets) {
            const auto* holder = field->source(step, target);
            if (holder == nullptr) {
                continue;
            }
            const auto table = reader_.read(*field, *holder);
            ++source_.summary().datasets;
            for (std::size_t column = 0; column < variables.size(); ++column) {
                writeColumn(output, place, variables[column], row, target,
                            columnOf(table, field->width, column));
                written.emplace(variables[column], target);
            }
        }
    }
    fillGaps(output, place, written, row);
}

void ExodusExporter::writeColumn(ExodusOutput& output, ResultPlace place, std::size_t variable,
                                 std::size_t row, std::size_t target, const std::vector<double>& values) {
    const auto& mesh = source_.mesh();
    if (place == ResultPlace::Nodes) {
        output.nodal(row, variable, mesh.nodeGroups[target].first, values);
        return;
    }
    const auto& part = mesh.parts[target];
    for (auto i = part.firstBlock; i < part.endBlock; ++i) {
        const auto& block = mesh.blocks[i];
        std::vector<double> ofBlock;
        ofBlock.reserve(block.rows.size());
        for (const auto element : block.rows) {
            ofBlock.push_back(values[element]);
        }
        output.elemental(row, variable, block.id, ofBlock);
    }
}

// A variable is on all nodes, or on the elements of a block in all steps or in none.
void ExodusExporter::fillGaps(ExodusOutput& output, ResultPlace place, const Written& written,
                              std::size_t row) {
    const auto& variables = variablesOf(place);
    for (std::size_t variable = 0; variable < variables.count(); ++variable) {
        for (std::size_t target = 0; target < targetCount(source_.mesh(), place); ++target) {
            const bool isGap = place == ResultPlace::Nodes || variables.targets(variable).contains(target);
            if (!isGap || written.contains({variable, target})) {
                continue;
            }
            const std::vector<double> values(itemsOf(source_.mesh(), place, target), Missing);
            writeColumn(output, place, variable, row, target, values);
            source_.summary().addNote("NaN stands where a node or an element has no result in a step");
        }
    }
}

const ExodusVariables& ExodusExporter::variablesOf(ResultPlace place) const {
    return place == ResultPlace::Nodes ? *nodal_ : *elemental_;
}

} // namespace MoxTool
