#pragma once

#include "../../common/ConversionSummary.h"
#include "../../exodus/ExodusFile.h"
#include "../model/DatasetWriter.h"
#include "../model/FloatNarrowing.h"
#include "../model/ShapeWriter.h"
#include "ExodusPart.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MoxTool {

/// Carries the mesh of an Exodus file into a model: a root group, one shape for each element block, nodes and
/// elements.
class MeshImporter {
public:
    /// @param model Open and without a node. All arguments must outlive the importer.
    MeshImporter(const ExodusFile& file, Qel::Mox2::Model& model, FloatNarrowing& narrowing,
                 ConversionSummary& summary);

    /// To be called once.
    /// @throws Failure if the file is damaged or has more than a model can hold; what the model throws.
    ImportedMesh run();

private:
    void addRoot();
    Qel::Mox2::Attributes rootAttributes() const;
    void addParts();
    ImportedPart addPart(std::size_t blockIndex, int dimension);
    void addNodes();
    void addAllElements();
    void addElements(const ImportedPart& part, std::span<const std::int64_t> ids);
    std::vector<unsigned int> readPolylength(const ExodusBlock& block) const;
    std::vector<unsigned int> readConnectivity(const ExodusBlock& block) const;

    const ExodusFile& file;
    Qel::Mox2::Model& model;
    FloatNarrowing& narrowing;
    ConversionSummary& summary;
    DatasetWriter writer;
    ShapeWriter shapes;
    ImportedMesh mesh;
};

} // namespace MoxTool
