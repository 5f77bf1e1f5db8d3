#include "CgnsSectionImporter.h"

#include "../../mesh/AttributeNames.h"
#include "../model/setNumber.h"
#include "CgnsElementTables.h"
#include "structuredCells.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace MoxTool {

namespace {

constexpr const char* Cells = "Cells"; // the shape of a structured zone
constexpr const char* CellTypes[] = {"BAR_2", "QUAD_4", "HEXA_8"};

Qel::Mox2::Attributes attributesOf(const std::string& section, const std::string& type,
                                   const ElementTable& table) {
    Qel::Mox2::Attributes attributes;
    if (!section.empty()) {
        attributes.set("Section", section);
    }
    attributes.set(AttributeNames::ElementType, type);
    setNumber(attributes, AttributeNames::Elements, static_cast<std::int64_t>(table.polylength.size()));
    const auto [least, most] = std::minmax_element(table.polylength.begin(), table.polylength.end());
    if (*least == *most) {
        setNumber(attributes, AttributeNames::NodesPerElement, *least);
    }
    return attributes;
}

} // namespace

std::vector<CgnsPart> CgnsSectionImporter::addZone(const CgnsBase& base, const CgnsZone& zone,
                                                   unsigned int group) {
    zoneGroup_ = group;
    std::vector<CgnsPart> parts;
    if (zone.isStructured) {
        addCells(base, zone, parts);
    }
    for (const auto& section : file_.sections(zone)) {
        addSection(base, zone, section, parts);
    }
    return parts;
}

void CgnsSectionImporter::addSection(const CgnsBase& base, const CgnsZone& zone, const CgnsSection& section,
                                     std::vector<CgnsPart>& parts) {
    const bool isWanted = isChosen(zone, section.name);
    if (section.hasParents && isWanted) {
        sectionsWithParents_.push_back(section.name);
    }
    if (!CgnsElementTables::canTake(section.type)) {
        if (!isWanted) {
            return;
        }
        otherSections_.push_back(fmt::format("{}: {} elements of type {}", section.name, section.count,
                                             cgnsTypeName(section.type)));
        return;
    }
    auto tables =
        CgnsElementTables(file_.path(), zone.vertices(), section).sort(file_.elements(zone, section));
    for (auto& [type, table] : tables) {
        const auto typeName = cgnsTypeName(type);
        const auto name = tables.size() == 1 ? section.name : fmt::format("{} ({})", section.name, typeName);
        table.attributes = attributesOf(section.name, typeName, table);
        parts.push_back(addPart(base, name, std::move(table), isWanted));
    }
}

bool CgnsSectionImporter::isChosen(const CgnsZone& zone, const std::string& section) {
    return target_.choices.blocks.takes(zone.name + "/" + section, {zone.name, section});
}

// Asks for all sections, since a choice must have seen all.
bool CgnsSectionImporter::hasChosen(const CgnsZone& zone) {
    bool isWanted = zone.isStructured && isChosen(zone, Cells);
    const auto sections = file_.sections(zone);
    for (const auto& section : sections) {
        isWanted = isChosen(zone, section.name) || isWanted;
    }
    return isWanted || (sections.empty() && isChosen(zone, zone.name));
}

void CgnsSectionImporter::addCells(const CgnsBase& base, const CgnsZone& zone, std::vector<CgnsPart>& parts) {
    auto table = structuredCells(zone);
    if (table.polylength.empty()) {
        return;
    }
    const std::string type = CellTypes[table.dimension - 1];
    table.attributes = attributesOf("", type, table);
    parts.push_back(addPart(base, Cells, std::move(table), isChosen(zone, Cells)));
}

// The numbers of what is left out are needed nonetheless, to find the cells that results belong to.
CgnsPart CgnsSectionImporter::addPart(const CgnsBase& base, const std::string& name, ElementTable table,
                                      bool isWanted) {
    if (!isWanted) {
        return {0, table.dimension == base.cellDimension, std::move(table.ids)};
    }
    const auto geometry = target_.shapes.addShape(zoneGroup_, name, partCount_++);
    target_.shapes.addElements(geometry, table);
    return {geometry, table.dimension == base.cellDimension, std::move(table.ids)};
}

void CgnsSectionImporter::listSkipped() {
    target_.summary.addSkipped("sections of other elements", otherSections_);
    target_.summary.addSkipped("parents of elements", sectionsWithParents_);
}

} // namespace MoxTool
