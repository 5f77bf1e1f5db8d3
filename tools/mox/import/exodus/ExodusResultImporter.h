#pragma once

#include "../../exodus/ExodusSource.h"
#include "../model/ImportTarget.h"
#include "../model/ResultPlan.h"
#include "ExodusMesh.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// Adds the results on nodes and elements to a model, step by step, with one result of one step in memory at
/// a time.
class ExodusResultImporter {
public:
    /// All arguments must outlive the importer.
    ExodusResultImporter(const ExodusSource& file, const ExodusMesh& mesh, ImportTarget& target);

    /// To be called once.
    /// @throws Failure if the file is damaged; std::length_error for a result that is too large; anything
    ///                 that the model throws.
    void run();

private:
    // Results with the same rows on the same geometries.
    struct Batch {
        ex_entity_type type;
        std::int64_t entity; // the id of the block
        std::int64_t rows;
        DatasetWriter::Ids geometries;
        std::vector<ResultDataset> results;
    };

    void planBatches();
    std::vector<std::size_t> chosenSteps() const;
    bool hasResults() const;
    ResultPlan planNodes();
    void planElements(const ExodusPart& part, const std::vector<int>& truthTable, ResultPlan plan);
    bool isChosen(const std::string& variable);
    std::vector<std::string> chosenOf(const std::vector<std::string>& variables);
    void listUnused(const std::vector<int>& truthTable);
    Qel::Mox2::Step describeStep(std::size_t step) const;
    void addStep(std::size_t step);
    void addResult(const Batch& batch, const ResultDataset& result, std::size_t step,
                   const Qel::Mox2::Step& label);
    const std::vector<std::string>& variablesOf(ex_entity_type type) const;

    const ExodusSource& file_;
    const ExodusMesh& mesh_;
    ImportTarget& target_;

    std::vector<std::string> nodeVariables_;
    std::vector<std::string> elementVariables_;
    std::vector<std::string> globalVariables_;
    std::vector<Batch> batches_;
};

} // namespace MoxTool
