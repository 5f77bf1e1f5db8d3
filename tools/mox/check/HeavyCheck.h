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

/// Checks where the numbers of datasets and node sets stand in "Heavy Data" and looks at each number once.
class HeavyCheck {
public:
    /// @param nodes       With nodeId and index of each dataset set, by the node's place in this list.
    /// @param areComplete Whether no dataset is missing; if one is, unused numbers are no finding.
    /// @param damaged     The blocks that can't be read.
    HeavyCheck(const MoxReader::File& file, const std::vector<MoxReader::Node>& nodes, bool areComplete,
               const std::set<std::uint64_t>& damaged, FindingList& findings);

    /// @return what is known of each dataset that is no link and has a sound shape and place.
    /// @throws MoxReader::Error ReadFailed alone.
    FactsByHolder run(const CheckProgress& progress);

private:
    /// Some bytes of the stream and whose they are: a dataset's, or a NodeSets node's.
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
    bool isInside(const Range& range);
    void look(const Range& range, const CheckProgress& progress);
    void lookAtSets(const Range& range);
    bool areListsWhole(const Range& range);
    void reportUnused(std::uint64_t from, std::uint64_t to);
    void checkStreamedFlags();
    std::optional<bool> isStreamed(std::size_t block) const;

    bool areComplete_;
    const std::set<std::uint64_t>& damagedBlocks_;
    FindingList& findings_;
    MoxReader::Model bare_;     ///< A root alone: node sets are read without a look at the tree.
    MoxReader::HeavyData data_; ///< Holds the one decompressed block.
    MoxReader::StreamReader& heavy_;
    std::vector<Range> ranges_; ///< In order of their positions.
    bool hasSets_ = false;
    FactsByHolder facts_;
};

} // namespace MoxTool
