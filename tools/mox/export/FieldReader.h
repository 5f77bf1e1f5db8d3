#pragma once

#include "ExportResults.h"

#include <MoxReader/HeavyData.h>

#include <vector>

namespace MoxTool {

/// Reads the numbers of results, as doubles, which hold every float and every integer of a file exactly.
class FieldReader {
public:
    /// Both must outlive the reader.
    FieldReader(const ExportMesh& mesh, MoxReader::HeavyData& heavy) : mesh_(mesh), heavy_(heavy) {}

    // Both throw MoxReader::Error.

    /// One dataset, row by row. @param holder One of the field's sources.
    std::vector<double> read(const ExportField& field, const MoxReader::Dataset& holder);
    /// One step of a field for all nodes, or for all elements in the order of the blocks, row by row. NaN
    /// where a target has no numbers.
    std::vector<double> readAll(const ExportField& field, std::size_t step);

private:
    void readNodes(const ExportField& field, std::size_t step, std::vector<double>& table);
    void readElements(const ExportField& field, std::size_t step, std::vector<double>& table);

    const ExportMesh& mesh_;
    MoxReader::HeavyData& heavy_;
};

} // namespace MoxTool
