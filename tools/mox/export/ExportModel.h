#pragma once

#include "../common/OpenModel.h"
#include "ExportRequest.h"
#include "ExportResults.h"
#include "FieldReader.h"

#include "../common/ConversionSummary.h"
#include "../common/WorkLimit.h"

#include <memory>

namespace MoxTool {

/// A saved model as an export needs it: its mesh and its results in one numbering, and the summary of what is
/// taken and what is not.
class ExportModel {
public:
    /// @throws Failure if the file can't be read, contradicts itself, has no mesh or lacks the wanted step.
    explicit ExportModel(const ExportRequest& request);

    const MoxReader::Model& model() const { return opened_.model(); }
    const ExportMesh& mesh() const { return parts_; }
    const ExportResults& results() const { return contents_; }
    /// The places of the requested steps.
    const std::vector<std::size_t>& wantedSteps() const { return wanted_; }
    FieldReader reader() { return FieldReader(parts_, heavy_); }
    ConversionSummary& summary() { return conversion_; }
    /// To be called before the mesh is written so many times.
    /// @throws Failure if that is out of proportion to the model's file.
    void limitMeshes(std::size_t count) { limit_.add(meshBytes_, count - 1); }

private:
    void read(const ExportRequest& request);
    void chooseSteps(const ExportRequest& request);
    void limitResults();
    bool isWanted(std::size_t step) const;

    OpenModel opened_;
    MoxReader::HeavyData heavy_;
    ConversionSummary conversion_;
    WorkLimit limit_;
    std::uint64_t meshBytes_ = 0;
    ExportMesh parts_;
    ExportResults contents_;
    std::vector<std::size_t> wanted_;
};

} // namespace MoxTool
