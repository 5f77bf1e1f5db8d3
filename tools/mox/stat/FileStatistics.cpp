#include "FileStatistics.h"

#include "StoredShare.h"

#include <MoxReader/Format.h>
#include <MoxReader/HeavyData.h>

#include <algorithm>

namespace MoxTool {

namespace {

namespace Format = MoxReader::Format;

TallyList tallyBlocks(const MoxReader::File& file) {
    TallyList blocks;
    for (const auto& block : file.blocks()) {
        if (!block.isEmptyEntry() && !block.isIndexBlock()) {
            blocks.add(block.name,
                       {1, 0, block.contentLength.value_or(0), static_cast<double>(block.length), 0});
        }
    }
    Tally index{1, 0, Format::FirstBlockPosition, Format::FirstBlockPosition, 0};
    for (const auto& block : file.blocks()) {
        if (block.isIndexBlock()) {
            index += {1, 0, block.length, static_cast<double>(block.length), 0};
        }
    }
    blocks.add(FileStatistics::Index, index);
    return blocks;
}

Tally tallyDataset(const MoxReader::Model& model, const MoxReader::Dataset& dataset,
                   const StoredShare& share) {
    const auto size = model.resolve(dataset).sizeInBytes;
    if (dataset.isLink) {
        return {0, 1, 0, 0, size};
    }
    return {1, 0, size, share.of(dataset.position, size), 0};
}

void tallyNode(FileStatistics& statistics, const MoxReader::Model& model, const MoxReader::Node& node,
               const StoredShare& share) {
    if (const auto* sets = node.nodeSets()) {
        statistics.datasets.add(FileStatistics::NodeSets,
                                {1, 0, sets->heavySize, share.of(sets->heavyPosition, sets->heavySize), 0});
    }
    if (node.geometry() == nullptr) {
        return;
    }
    for (const auto& dataset : node.geometry()->datasets) {
        const auto tally = tallyDataset(model, dataset, share);
        statistics.datasets.add(dataset.name, tally);
        statistics.steps.add(dataset.step, tally);
    }
}

// Numbers that were given again under the same key make the first ones unused.
void tallyUnclaimed(FileStatistics& statistics, std::uint64_t streamSize, double stored) {
    const auto claimed = statistics.datasets.sum();
    if (streamSize > claimed.content) {
        statistics.datasets.add(FileStatistics::Unclaimed, {1, 0, streamSize - claimed.content,
                                                            std::max(0.0, stored - claimed.stored), 0});
    }
}

} // namespace

FileStatistics collectStatistics(const MoxReader::File& file, const MoxReader::Model& model) {
    const auto heavy = MoxReader::openHeavyStream(file, model.nodes());
    const StoredShare share(heavy);
    FileStatistics statistics;
    statistics.blocks = tallyBlocks(file);
    for (const auto& node : model.nodes()) {
        tallyNode(statistics, model, node, share);
    }
    tallyUnclaimed(statistics, heavy.size(), share.of(0, heavy.size()));
    return statistics;
}

} // namespace MoxTool
