#pragma once

#include "../../exodus/ExodusSource.h"
#include "../model/ImportTarget.h"
#include "ExodusMesh.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MoxTool {

/// Adds the mesh of an Exodus file to a model: a root group, one shape for each element block, nodes and
/// elements.
class ExodusMeshImporter {
public:
    /// Both must outlive the importer.
    ExodusMeshImporter(const ExodusSource& file, ImportTarget& target) : file_(file), target_(target) {}

    /// To be called once.
    /// @throws Failure if the file is damaged or has more than a model can hold; anything that the model
    ///                 throws.
    ExodusMesh run();

private:
    void addRoot();
    Qel::Mox2::Attributes rootAttributes() const;
    void addParts();
    ExodusPart addPart(std::size_t blockIndex, int dimension);
    void addNodes();
    void addAllElements();
    void addElements(const ExodusPart& part, std::span<const std::int64_t> ids);
    std::vector<unsigned int> readPolylength(const ExodusBlock& block) const;
    std::vector<unsigned int> readConnectivity(const ExodusBlock& block) const;

    const ExodusSource& file_;
    ImportTarget& target_;
    ExodusMesh mesh_;
};

} // namespace MoxTool
