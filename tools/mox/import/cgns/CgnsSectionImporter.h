#pragma once

#include "../model/ImportTarget.h"
#include "CgnsFile.h"
#include "CgnsPart.h"

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Adds the elements of CGNS zones to a model: a shape for each section and element type, or one for the
/// cells of a structured zone.
class CgnsSectionImporter {
public:
    /// Both must outlive the importer.
    CgnsSectionImporter(const CgnsFile& file, ImportTarget& target) : file_(file), target_(target) {}

    /// Whether anything of a zone is to be taken.
    bool hasChosen(const CgnsZone& zone);

    /// @param group The zone's node in the model.
    /// @throws Failure if the file is damaged; anything that the model throws.
    std::vector<CgnsPart> addZone(const CgnsBase& base, const CgnsZone& zone, unsigned int group);

    /// Notes in the summary what was skipped in all zones.
    void listSkipped();

private:
    void addSection(const CgnsBase& base, const CgnsZone& zone, const CgnsSection& section,
                    std::vector<CgnsPart>& parts);
    void addCells(const CgnsBase& base, const CgnsZone& zone, std::vector<CgnsPart>& parts);
    CgnsPart addPart(const CgnsBase& base, const std::string& name, ElementTable table, bool isWanted);
    bool isChosen(const CgnsZone& zone, const std::string& section);

    const CgnsFile& file_;
    ImportTarget& target_;
    unsigned int zoneGroup_ = 0;
    std::size_t partCount_ = 0;
    std::vector<std::string> otherSections_;
    std::vector<std::string> sectionsWithParents_;
};

} // namespace MoxTool
