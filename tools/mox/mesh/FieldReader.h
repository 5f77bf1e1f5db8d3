#pragma once

#include "ModelResults.h"

#include <MoxReader/HeavyData.h>

#include <vector>

namespace MoxTool {

/// Reads the numbers of results, as doubles, which hold every float and every integer of a file exactly.
class FieldReader {
public:
    /// Both must outlive the reader.
    FieldReader(const ModelMesh& mesh, MoxReader::HeavyData& heavy) : mesh_(mesh), heavy_(heavy) {}

    // Both throw MoxReader::Error.

    /// One dataset, row by row. @param holder One of the field's sources.
    std::vector<double> read(const ResultField& field, const MoxReader::Dataset& holder);
    /// One step of a field for all nodes, or for all elements in the order of the blocks, row by row. NaN
    /// where a target has no numbers.
    std::vector<double> readAll(const ResultField& field, std::size_t step);

private:
    void readNodes(const ResultField& field, std::size_t step, std::vector<double>& table);
    void readElements(const ResultField& field, std::size_t step, std::vector<double>& table);

    const ModelMesh& mesh_;
    MoxReader::HeavyData& heavy_;
};

} // namespace MoxTool
