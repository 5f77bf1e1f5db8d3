#pragma once

#include "../common/ConversionSummary.h"
#include "ModelChoice.h"
#include "ModelResults.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>

namespace MoxTool {

/// Finds the wanted results of a mesh and their steps, and notes the datasets that are not results.
class ResultCollector {
public:
    /// All must outlive the collector.
    ResultCollector(const MoxReader::Model& model, const ModelChoice& choice, const ModelMesh& mesh,
                    ConversionSummary& summary);

    /// To be called once. @throws MoxReader::Error for links that lead nowhere.
    ModelResults collect();

private:
    using FieldKey =
        std::tuple<ResultPlace, std::string, std::uint32_t, std::uint8_t, bool, std::vector<std::string>>;

    void collectSteps();
    void addPart(std::size_t partIndex);
    void addDataset(std::size_t partIndex, const MoxReader::Dataset& dataset);
    std::size_t fieldOf(const MoxReader::Dataset& dataset, const MoxReader::Dataset& holder);
    void listSkipped();

    const MoxReader::Model& model_;
    const ModelChoice& choice_;
    const ModelMesh& mesh_;
    ConversionSummary& summary_;
    std::map<std::string, std::size_t> stepPlaces_;
    std::map<FieldKey, std::size_t> fieldPlaces_;
    std::set<std::string> others_;
    std::set<std::string> misfits_;
    ModelResults results_;
};

} // namespace MoxTool
