#pragma once

#include "../model/ImportTarget.h"
#include "CgnsFile.h"
#include "CgnsPart.h"
#include "CgnsResultImporter.h"
#include "CgnsSectionImporter.h"

#include <string>
#include <vector>

namespace MoxTool {

/// Converts a CGNS file into a model: a group for each base and each zone, with its shapes and results.
class CgnsImporter {
public:
    /// Both must outlive the importer.
    CgnsImporter(const CgnsFile& file, ImportTarget& target)
        : file_(file), target_(target), sections_(file, target), results_(file, target) {}

    /// To be called once.
    /// @throws Failure if the file is damaged or has more than a model can hold; what the model throws.
    void run();

private:
    unsigned int addGroup(const CgnsBase& base, unsigned int root);
    void addZones(const CgnsBase& base, unsigned int group);
    void addZone(const CgnsBase& base, const CgnsZone& zone, unsigned int baseGroup);
    void addVertices(const CgnsZone& zone, const std::vector<CgnsPart>& parts);
    void listSkipped();

    const CgnsFile& file_;
    ImportTarget& target_;
    CgnsSectionImporter sections_;
    CgnsResultImporter results_;
    std::size_t zoneCount_ = 0;
    std::size_t zonesDone_ = 0;
    std::vector<std::string> otherCoordinates_;
};

} // namespace MoxTool
