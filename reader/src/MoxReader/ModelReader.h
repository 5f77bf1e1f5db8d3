#pragma once

#include "MoxReader/Model.h"

namespace MoxReader {

/// Reads a model in four passes over the nodes, one for each stream, so that one stream at a time is in
/// memory.
class ModelReader {
public:
    explicit ModelReader(const File& file);

    Model read();

private:
    void readTree();
    void readLightData();
    void readAttributeLists();
    void readMaterials();
    GlobalInformation readGlobal() const;

    const File& file_;
    std::vector<Node> nodes_;
};

} // namespace MoxReader
