#pragma once

#include "NumberMap.h"
#include "PackedGeometry.h"

#include <Qel/Mox/Tree.h>
#include <Qel/Util/HashTable.h>

#include <MoxReader/Model.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace MoxTool {

/// What goes into a new model of the model of one file.
struct MergedPart {
    std::string path; ///< As the user gave it.
    const MoxReader::Model& model;
    const NumberMap& numbers;
    /// Of a node that is not taken, nothing below it is taken either.
    std::function<bool(const MoxReader::Node&)> takesNode;
    std::function<bool(const MoxReader::Dataset&)> takesDataset;
    std::string group =
        {}; ///< The name of the group below the root that everything gets into; empty for none.
    std::string suffix = {}; ///< What is appended to the names of shapes.
};

/// Builds the tree of a new model from those of files, one after the other.
///
/// Nodes of one path become one. Among siblings of one name and type in a file, the first stands for the first of
/// them in the new model, the second for the second and so on. A link leads to the same dataset as in its file; where
/// that is not taken, the first link to it that is taken gets its numbers.
class TreeMerge {
public:
    /// @param tree        Of a root without content; must outlive this object.
    /// @param preferFirst Of two things that clash, the one that came first is kept. Otherwise they are an error.
    TreeMerge(QelMox::Tree& tree, bool preferFirst) : tree_(tree), preferFirst_(preferFirst) {}

    /// @throws Failure for a clash that is an error; it names both files, the path and the dataset.
    void add(const MergedPart& part);

    /// One sentence for each thing that was left out since it clashed with an earlier one.
    const std::vector<std::string>& leftOut() const { return leftOut_; }

    std::uint64_t datasetCount() const { return datasetCount_; }

private:
    class PartMerge;
    using OwnersByKey = std::unordered_map<std::string, std::uint32_t>; // the numbers of files

    std::uint32_t fileOf(std::uint32_t id) const { return owners_[id - 1]; }
    const std::string& pathOf(std::uint32_t file) const { return files_[file]; }
    OwnersByKey& ownersOf(std::uint32_t id, const PackedGeometry& geometry);
    std::uint32_t addNode(std::uint32_t parent, std::unique_ptr<QelMox::Node> payload);
    std::vector<std::uint32_t> childrenNamed(std::uint32_t parent, const std::string& name,
                                             std::uint32_t before) const;

    QelMox::Tree& tree_;
    bool preferFirst_;
    bool hasRoot_ = false;
    std::vector<std::string> files_;
    std::vector<std::uint32_t> owners_; ///< For each node, the file that it came from first.
    QelUtil::HashTable children_;       ///< By their parents and names.
    std::unordered_map<std::uint32_t, OwnersByKey> sharedKeys_; ///< Of geometries to which several files add.
    std::vector<std::string> leftOut_;
    std::uint64_t datasetCount_ = 0;
};

} // namespace MoxTool
