#pragma once

#include "TallyList.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

namespace MoxTool {

/// Where the bytes of a file go. Reads the index and the model's descriptors, but no numbers.
struct FileStatistics {
    TallyList blocks; ///< By block name, and one row for the header and the index. Adds up to the file.
    /// By dataset name over all geometries and steps, and what else the numbers' stream has.
    TallyList datasets;
    TallyList steps; ///< By step name; datasets without a step have the empty name.

    static constexpr const char* Index = "(header and index)";
    static constexpr const char* NodeSets = "(node sets)";
    static constexpr const char* Unclaimed = "(claimed by nothing)";
};

/// @throws MoxReader::Error if a link leads nowhere.
FileStatistics collectStatistics(const MoxReader::File& file, const MoxReader::Model& model);

} // namespace MoxTool
