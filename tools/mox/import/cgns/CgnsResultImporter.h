#pragma once

#include "../model/ImportTarget.h"
#include "../model/ResultPlan.h"
#include "CgnsFile.h"
#include "CgnsPart.h"

#include <string>
#include <vector>

namespace MoxTool {

/// Adds the results of CGNS zones on vertices and cell centres to a model, with one dataset of one step in
/// memory at a time.
class CgnsResultImporter {
public:
    /// Both must outlive the importer.
    CgnsResultImporter(const CgnsFile& file, ImportTarget& target) : file_(file), target_(target) {}

    /// Adds the results without a step.
    /// @param source Must outlive the call of addSteps() for its base.
    /// @throws Failure if the file is damaged; std::length_error for a result that is too large; what the
    ///         model throws.
    void addZone(const CgnsBase& base, const CgnsZone& source, std::vector<CgnsPart> parts);
    /// Adds the steps of all zones added since the last call, one by one, so that they come in order even if
    /// the first zone does not have the first step.
    /// @throws As addZone().
    void addSteps(const CgnsBase& base);

    /// Notes in the summary what was skipped in all zones.
    void listSkipped();

private:
    using Solutions = std::vector<const CgnsSolution*>;

    // A zone and what is to be added to it.
    struct Zone {
        const CgnsZone& source;
        std::vector<CgnsPart> parts;
        std::vector<unsigned int> cells; // numbers of the zone's elements that are cells, ascending
        std::vector<CgnsSolution> solutions;
        std::vector<std::vector<std::string>> steps; // the names of their solutions
    };

    // The fields of some solutions at one place.
    struct Fields {
        std::vector<std::string> names;
        Solutions solutions; // one for each name
    };

    void askForFields(const std::vector<CgnsSolution>& solutions);
    bool canTake(const Zone& zone, const CgnsSolution& solution);
    void addStep(const CgnsBase& base, const Zone& zone, const Solutions& solutions,
                 const Qel::Mox2::Step& step);
    Fields fieldsAt(CGNS_ENUMT(GridLocation_t) location, const Solutions& solutions);
    std::vector<std::vector<double>> readColumns(const Zone& zone, const Fields& fields,
                                                 const ResultDataset& result) const;
    void addOnVertices(const Zone& zone, const Fields& fields, const ResultDataset& result,
                       const Qel::Mox2::Step& step);
    void addOnCells(const Zone& zone, const Fields& fields, const ResultDataset& result,
                    const Qel::Mox2::Step& step);

    const CgnsFile& file_;
    ImportTarget& target_;
    std::vector<Zone> zones_;
    std::vector<std::string> elsewhere_;
    std::vector<std::string> withoutCells_;
};

} // namespace MoxTool
