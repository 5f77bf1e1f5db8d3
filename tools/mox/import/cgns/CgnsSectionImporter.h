#pragma once

#include "../../common/ConversionSummary.h"
#include "../model/ShapeWriter.h"
#include "CgnsFile.h"
#include "CgnsPart.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Carries the elements of CGNS zones into a model: a shape for each section and element type, or one for the
/// cells of a structured zone.
class CgnsSectionImporter {
public:
    /// All arguments must outlive the importer.
    CgnsSectionImporter(const CgnsFile& input, Qel::Mox2::Model& model, ConversionSummary& results)
        : file(input), summary(results), shapes(model, results) {}

    /// @param group The zone's node in the model.
    /// @throws Failure if the file is damaged; what the model throws.
    std::vector<CgnsPart> addZone(const CgnsBase& base, const CgnsZone& zone, unsigned int group);

    /// Notes in the summary what was not taken of all zones.
    void leaveTheRest();

private:
    void addSection(const CgnsBase& base, const CgnsZone& zone, const CgnsSection& section,
                    std::vector<CgnsPart>& parts);
    void addCells(const CgnsBase& base, const CgnsZone& zone, std::vector<CgnsPart>& parts);
    CgnsPart addPart(const CgnsBase& base, const std::string& name, ElementTable table);

    const CgnsFile& file;
    ConversionSummary& summary;
    ShapeWriter shapes;
    unsigned int zoneGroup = 0;
    std::size_t partCount = 0;
    std::vector<std::string> otherSections;
    std::vector<std::string> sectionsWithParents;
};

} // namespace MoxTool
