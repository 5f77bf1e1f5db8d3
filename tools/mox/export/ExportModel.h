#pragma once

#include "../common/OpenModel.h"
#include "ExportRequest.h"
#include "ExportResults.h"
#include "FieldReader.h"

#include "../common/ConversionSummary.h"

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

private:
    void read(const ExportRequest& request);
    void chooseSteps(const ExportRequest& request);

    OpenModel opened_;
    MoxReader::HeavyData heavy_;
    ConversionSummary conversion_;
    ExportMesh parts_;
    ExportResults contents_;
    std::vector<std::size_t> wanted_;
};

} // namespace MoxTool
