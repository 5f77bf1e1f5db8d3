#pragma once

#include "NumberMap.h"
#include "StoredBlock.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace MoxTool {

/// Called with the fraction of the work that is done, from 0 to 1.
using PartProgress = std::function<void(double)>;

/// What is looked at in a file before its blocks are copied.
enum class PartCheck {
    Structure,  ///< Everything but the numbers, whose blocks are not inflated.
    Everything, ///< All that mox check looks at.
    Repair,     ///< Every block is inflated, and what can't be read is left out.
};

/// A model file whose blocks of numbers can be copied as they are stored. It is open only while it is made.
class PartFile {
public:
    /// @throws Failure if the file can't be opened, if it has an error by the rules of mox check, or, with
    ///                 PartCheck::Repair, if its tree can't be read.
    PartFile(const std::string& path, PartCheck check, const PartProgress& progress);

    const std::string& path() const { return path_; }
    const MoxReader::Model& model() const { return model_; }
    /// The blocks of numbers that can be read, in the order of the stream.
    const std::vector<StoredBlock>& blocks() const { return blocks_; }
    /// Whether the last of them was marked as having more than one array.
    bool isLastBlockMarked() const { return isLastMarked_; }

    bool isReadable(const MoxReader::Dataset& dataset) const {
        return !unreadable_.contains(placeOf(dataset));
    }
    bool isReadable(const MoxReader::Node& node) const { return !lostSets_.contains(node.id); }
    /// A sentence for each dataset and each node that is left out, why.
    const std::vector<std::string>& lost() const { return lost_; }

private:
    using Place = std::uint64_t; // the node's id and the index in it

    static Place placeOf(const MoxReader::Dataset& dataset) {
        return (std::uint64_t{dataset.nodeId} << 32U) + dataset.index;
    }

    PartFile(const std::string& path, const MoxReader::File& file, PartCheck check,
             const PartProgress& progress);
    void collectBlocks(const MoxReader::File& file, PartCheck check, const PartProgress& progress);
    void findLost();
    void judgeLastBlock();
    void findLostDatasets(const MoxReader::Node& node, const MoxReader::LinkTable& links,
                          const NumberMap& readable, const std::string& title);

    std::string path_;
    MoxReader::Model model_;
    std::vector<StoredBlock> blocks_;
    bool isLastMarked_ = false;
    std::unordered_set<Place> unreadable_;
    std::unordered_set<std::uint32_t> lostSets_;
    std::vector<std::string> lost_;
};

} // namespace MoxTool
