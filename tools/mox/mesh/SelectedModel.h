#pragma once

#include "../common/ConversionSummary.h"
#include "../common/OpenModel.h"
#include "../common/WorkLimit.h"
#include "FieldReader.h"
#include "ModelChoice.h"
#include "ModelResults.h"
#include "ModelSelection.h"

#include <memory>

namespace MoxTool {

/// What is selected of a saved model: its mesh and its results in one numbering, and the summary of what is
/// taken and what is not.
class SelectedModel {
public:
    /// @param output What the summary is about, for the user.
    /// @throws Failure if the file can't be read, contradicts itself, has no mesh or lacks the wanted step.
    SelectedModel(const ModelSelection& selection, const std::string& output);

    const MoxReader::File& file() const { return opened_.file(); }
    const MoxReader::Model& model() const { return opened_.model(); }
    const ModelMesh& mesh() const { return parts_; }
    const ModelResults& results() const { return contents_; }
    /// The places of the requested steps.
    const std::vector<std::size_t>& wantedSteps() const { return wanted_; }
    FieldReader reader() { return FieldReader(parts_, heavy_); }
    ConversionSummary& summary() { return conversion_; }
    /// To be called before the mesh is written so many times.
    /// @throws Failure if that is out of proportion to the model's file.
    void limitMeshes(std::size_t count) { limit_.add(meshBytes_, count - 1); }

private:
    void read(const ModelSelection& selection);
    void chooseSteps(const ModelSelection& selection);
    void limitResults();
    bool isWanted(std::size_t step) const;

    OpenModel opened_;
    MoxReader::HeavyData heavy_;
    ConversionSummary conversion_;
    WorkLimit limit_;
    std::uint64_t meshBytes_ = 0;
    ModelMesh parts_;
    ModelResults contents_;
    std::vector<std::size_t> wanted_;
};

} // namespace MoxTool
