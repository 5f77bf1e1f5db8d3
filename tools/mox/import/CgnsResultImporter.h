#pragma once

#include "CgnsFile.h"
#include "CgnsPart.h"
#include "DatasetWriter.h"
#include "FloatNarrowing.h"
#include "ImportSummary.h"
#include "ResultPlan.h"

#include <Qel/Mox2/Model.h>

#include <string>
#include <vector>

namespace MoxTool {

/// Carries the results of CGNS zones on vertices and cell centres into a model, with one dataset of one step
/// in memory at a time.
class CgnsResultImporter {
public:
    /// All arguments must outlive the importer.
    CgnsResultImporter(const CgnsFile& input, Qel::Mox2::Model& model, FloatNarrowing& toFloat,
                       ImportSummary& results)
        : file(input), summary(results), narrowing(toFloat), writer(model, results) {}

    /// @throws Failure if the file is damaged; std::length_error for a result that is too large; what the
    /// model
    ///         throws.
    void addZone(const CgnsBase& base, const CgnsZone& zone, const std::vector<CgnsPart>& parts);

    /// Notes in the summary what was not taken of all zones.
    void leaveTheRest();

private:
    using Solutions = std::vector<const CgnsSolution*>;

    // The fields of some solutions at one place.
    struct Fields {
        std::vector<std::string> names;
        Solutions solutions; // one for each name
    };

    bool canTake(const CgnsZone& zone, const CgnsSolution& solution);
    void addStep(const CgnsBase& base, const Solutions& solutions, const Qel::Mox2::Step& step);
    static Fields fieldsAt(CGNS_ENUMT(GridLocation_t) location, const Solutions& solutions);
    std::vector<std::vector<double>> readColumns(const Fields& fields, const ResultDataset& result) const;
    void addOnVertices(const Fields& fields, const ResultDataset& result, const Qel::Mox2::Step& step);
    void addOnCells(const Fields& fields, const ResultDataset& result, const Qel::Mox2::Step& step);

    const CgnsFile& file;
    ImportSummary& summary;
    FloatNarrowing& narrowing;
    DatasetWriter writer;
    const CgnsZone* zone = nullptr;
    const std::vector<CgnsPart>* parts = nullptr;
    std::vector<unsigned int> cells; // numbers of the zone's elements that are cells, ascending
    std::vector<std::string> elsewhere;
    std::vector<std::string> withoutCells;
};

} // namespace MoxTool
