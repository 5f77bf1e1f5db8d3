#include "CgnsImporter.h"

#include "../../common/Failure.h"
#include "../../common/Terminal.h"
#include "../../common/utf8Path.h"
#include "../../mesh/AttributeNames.h"
#include "../../mesh/DatasetNames.h"
#include "../model/makeStep.h"
#include "../model/setNumber.h"
#include "listSkippedCgnsNodes.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <numeric>
#include <utility>

namespace MoxTool {

using Qel::Mox2::DatasetType;

namespace {

constexpr std::array<const char*, 3> CoordinateNames = {"CoordinateX", "CoordinateY", "CoordinateZ"};

void setFile(Qel::Mox2::Attributes& attributes, const CgnsFile& file) {
    attributes.set(AttributeNames::SourceFile, utf8Of(pathOf(file.path()).filename()));
    attributes.set("CGNS Version", fmt::format("{:.2f}", file.version()));
}

void setBase(Qel::Mox2::Attributes& attributes, const CgnsBase& base) {
    setNumber(attributes, "Cell Dimension", base.cellDimension);
    setNumber(attributes, "Physical Dimension", base.physicalDimension);
    setNumber(attributes, "Zones", static_cast<std::int64_t>(base.zones.size()));
    setNumber(attributes, AttributeNames::Steps, static_cast<std::int64_t>(base.times.size()));
}

Qel::Mox2::Attributes zoneAttributes(const CgnsZone& zone) {
    Qel::Mox2::Attributes attributes;
    attributes.set("Zone Type", zone.isStructured ? "Structured" : "Unstructured");
    setNumber(attributes, "Vertices", static_cast<std::int64_t>(zone.vertices()));
    setNumber(attributes, "Cells", static_cast<std::int64_t>(zone.cells()));
    return attributes;
}

// Steps of one number are one step of the model, with the time of the first base that has it.
ModelSteps stepsOf(const std::vector<CgnsBase>& bases) {
    std::vector<double> times;
    for (const auto& base : bases) {
        for (auto place = times.size(); place < base.times.size(); ++place) {
            times.push_back(base.times[place]);
        }
    }
    return stepsAt(times);
}

} // namespace

void CgnsImporter::run() {
    const auto bases = file_.bases();
    if (bases.empty()) {
        throw Failure(file_.path(), "has no base");
    }
    for (const auto& base : bases) {
        zoneCount_ += base.zones.size();
    }
    target_.choices.steps.resolve(stepsOf(bases));
    const auto stem = utf8Of(pathOf(file_.path()).stem());
    Qel::Mox2::Attributes attributes;
    setFile(attributes, file_);
    if (bases.size() == 1) {
        setBase(attributes, bases.front());
    }
    const auto root = target_.model.addNode(Qel::Mox2::NodeType::RootGroup,
                                            bases.size() == 1 ? bases.front().name : stem, attributes);
    for (const auto& base : bases) {
        addZones(base, bases.size() == 1 ? root : addGroup(base, root));
    }
    target_.terminal.clearProgress();
    listSkipped();
}

unsigned int CgnsImporter::addGroup(const CgnsBase& base, unsigned int root) {
    Qel::Mox2::Attributes attributes;
    setBase(attributes, base);
    target_.model.setCurrentNodeId(root);
    return target_.model.addNode(Qel::Mox2::NodeType::Group, base.name, attributes);
}

void CgnsImporter::addZones(const CgnsBase& base, unsigned int group) {
    for (const auto& zone : base.zones) {
        target_.terminal.progress("importing zones",
                                  static_cast<double>(zonesDone_++) / static_cast<double>(zoneCount_));
        addZone(base, zone, group);
    }
    results_.addSteps(base);
}

void CgnsImporter::addZone(const CgnsBase& base, const CgnsZone& zone, unsigned int baseGroup) {
    if (!sections_.hasChosen(zone)) {
        return;
    }
    target_.limits.checkNodeCount(zone.vertices());
    target_.model.setCurrentNodeId(baseGroup);
    const auto group = target_.model.addNode(Qel::Mox2::NodeType::Group, zone.name, zoneAttributes(zone));
    auto parts = sections_.addZone(base, zone, group);
    addVertices(zone, parts);
    results_.addZone(base, zone, std::move(parts));
}

void CgnsImporter::addVertices(const CgnsZone& zone, const std::vector<CgnsPart>& parts) {
    RealTable table(zone.vertices(), CoordinateNames.size());
    for (const auto& name : file_.coordinateNames(zone)) {
        const auto axis =
            std::find(CoordinateNames.begin(), CoordinateNames.end(), name) - CoordinateNames.begin();
        if (static_cast<std::size_t>(axis) == CoordinateNames.size()) {
            otherCoordinates_.push_back(name);
        } else {
            table.setColumn(static_cast<std::size_t>(axis), file_.coordinates(zone, name), target_.narrowing);
        }
    }
    if (parts.empty()) {
        target_.summary.addNote(
            fmt::format("zone {} has no elements that a model can take; its {} vertices are not taken",
                        zone.name, zone.vertices()));
        return;
    }
    std::vector<unsigned int> geometries;
    geometries.reserve(parts.size());
    for (const auto& part : parts) {
        if (part.geometry != 0) {
            geometries.push_back(part.geometry);
        }
    }
    std::vector<unsigned int> ids(zone.vertices());
    std::iota(ids.begin(), ids.end(), 1U);
    target_.datasets.writeReals(DatasetNames::Coordinates, DatasetType::Coordinates, table, geometries, {});
    target_.datasets.writeIntegers(DatasetType::NodeIds, ids, geometries);
    target_.summary.nodes += static_cast<std::int64_t>(zone.vertices());
}

void CgnsImporter::listSkipped() {
    target_.summary.addSkipped("coordinates other than CoordinateX, CoordinateY and CoordinateZ",
                               otherCoordinates_);
    sections_.listSkipped();
    results_.listSkipped();
    listSkippedCgnsNodes(file_, target_.summary);
}

} // namespace MoxTool
