#pragma once

#include "../../exodus/ExodusOutput.h"
#include "../ExportModel.h"
#include "CutTexts.h"
#include "ExodusVariables.h"

#include <optional>

namespace MoxTool {

class Terminal;

/// Writes a model to an Exodus file, with one result of one step in memory at a time.
class ExodusExporter {
public:
    /// Both must outlive the exporter.
    ExodusExporter(ExportModel& source, Terminal& terminal);

    /// To be called once.
    /// @param path      Where the file is written.
    /// @param shownPath Its path in failures.
    /// @throws Failure if it can't be written; MoxReader::Error.
    void write(const std::string& path, const std::string& shownPath);

private:
    using Ids = std::vector<std::int64_t>;
    using Written = std::set<std::pair<std::size_t, std::size_t>>; // a variable on a target

    void planMaps();
    std::optional<Ids> takeIds(ResultPlace place, const std::string& name);
    ExodusOutput::Layout layout();
    ExodusBlock describe(const MeshBlock& block);
    void writeMesh(ExodusOutput& output);
    void writeCoordinates(ExodusOutput& output);
    void declareVariables(ExodusOutput& output);
    void writeSteps(ExodusOutput& output);
    void writeStaticStep(ExodusOutput& output);
    void writeBareTimes(ExodusOutput& output);
    void writeGlobals(ExodusOutput& output, std::size_t row, const ModelStep& step);
    void writeResults(ExodusOutput& output, ResultPlace place, std::size_t row, std::size_t step);
    void writeColumn(ExodusOutput& output, ResultPlace place, std::size_t variable, std::size_t row,
                     std::size_t target, const std::vector<double>& values);
    void fillGaps(ExodusOutput& output, ResultPlace place, const Written& written, std::size_t row);
    const ExodusVariables& variablesOf(ResultPlace place) const;

    ExportModel& source_;
    Terminal& terminal_;
    FieldReader reader_;
    int dimension_;
    CutTexts cutTexts_;
    std::vector<const ResultField*> mapFields_;
    std::optional<Ids> nodeIds_;
    std::optional<Ids> elementIds_;
    std::optional<ExodusVariables> nodal_;
    std::optional<ExodusVariables> elemental_;
    bool hasModes_ = false;
};

} // namespace MoxTool
