#pragma once

#include "../common/NodePaths.h"
#include "../common/NumberFile.h"
#include "../common/StepFilter.h"
#include "../common/Terminal.h"
#include "../common/jsonValue.h"
#include "NumberFormat.h"

#include <filesystem>
#include <string>
#include <vector>

namespace MoxTool {

/// Writes every dataset of a file into a folder of its own, and an index.
///
/// The files are named after the node's id, the dataset's place in the node, its name and its step, such as
/// 4-2-Displacement-Load_1.csv. A dataset that links to another has no file of its own; the index says where
/// its numbers are. The index is `index.json`: the datasets in order of nodes, each with its file, node,
/// name, step, type and shape.
class FolderExtraction {
public:
    /// @param file Must outlive this object.
    /// @param steps  Which datasets to take.
    /// @param formatName The format of all files, by its name in NumberFormats.
    /// @param header Whether files of Csv begin with the names of their columns.
    FolderExtraction(NumberFile& file, StepFilter steps, std::string formatName, bool header,
                     Terminal& messages);

    /// @param name The path of a folder that must not exist; it appears when it is complete.
    /// @throws Failure
    void writeTo(const std::string& name);

private:
    void writeDatasets(const std::filesystem::path& folder) const;
    void writeIndex(const std::filesystem::path& folder) const;
    std::vector<const MoxReader::Dataset*> holdersByPosition() const;
    std::string fileName(const MoxReader::Dataset& holder) const;
    Json indexEntry(const MoxReader::Node& node, const MoxReader::Dataset& dataset) const;

    NumberFile& file_;
    StepFilter steps_;
    NodePaths paths_;
    std::string formatName_;
    bool header_;
    Terminal& messages_;
};

} // namespace MoxTool
