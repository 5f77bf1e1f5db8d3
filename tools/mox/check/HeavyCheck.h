#pragma once

#include "BlockCheck.h"
#include "FindingList.h"
#include "NumberFacts.h"

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Node.h>

#include <set>
#include <vector>

namespace MoxTool {

/// Checks where the numbers of datasets and node sets are in "Heavy Data" and reads each number once.
class HeavyCheck {
public:
    /// @param nodes       The nodeId and index of each dataset are set, by the node's place in this list.
    /// @param areComplete Whether no dataset is missing; if any is, unused numbers are not reported.
    HeavyCheck(const MoxReader::File& source, const std::vector<MoxReader::Node>& nodes, bool areComplete,
               FindingList& findings);

    /// @return the facts about each dataset that is not a link and has a sound shape and place.
    /// @throws MoxReader::Error with ReadFailed only.
    FactsByHolder run(const CheckProgress& progress);
    /// Checks the places alone, and decompresses nothing.
    void runOnPlaces();

    /// The ids of the blocks that have been read without damage.
    std::set<std::uint64_t> soundBlocks() const;

private:
    /// A range of the stream and its owner: a dataset or a NodeSets node.
    struct Range {
        std::uint64_t position;
        std::uint64_t size;
        std::uint32_t node;
        const MoxReader::Dataset* holder; ///< Null for node sets.
        const MoxReader::NodeSets* sets;  ///< Null for a dataset.

        std::uint64_t end() const { return position + size; }
        FindingPlace place() const;
    };

    void collect(const MoxReader::Node& node, std::uint32_t id);
    void runOnRanges(const CheckProgress& progress);
    bool isInside(const Range& range);
    bool isReadable(std::size_t block);
    void look(const Range& range, const CheckProgress& progress);
    void lookAtSets(const Range& range);
    bool areListsWhole(const Range& range);
    void reportUnused(std::uint64_t from, std::uint64_t to);
    void checkStreamedFlags();
    std::optional<bool> isStreamed(std::size_t block) const;

    bool areComplete_;
    bool readsNumbers_ = true;
    FindingList& findings_;
    MoxReader::Model bare_;     ///< Only a root: node sets are read without looking at the tree.
    MoxReader::HeavyData data_; ///< Holds the one decompressed block.
    MoxReader::StreamReader& heavy_;
    std::vector<Range> ranges_;     ///< In order of their positions.
    std::set<std::size_t> damaged_; ///< Places of blocks that can't be read, which are tried only once.
    bool hasSets_ = false;
    FactsByHolder facts_;
};

} // namespace MoxTool
