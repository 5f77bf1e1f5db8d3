#include "FileCheck.h"

#include "../common/NodePaths.h"
#include "DatasetCheck.h"
#include "HeavyCheck.h"
#include "IndexCheck.h"
#include "ModelScan.h"
#include "SenseCheck.h"
#include "TreeCheck.h"

#include <MoxReader/File.h>

#include <set>
#include <utility>

namespace MoxTool {

namespace {

// The share of the streams in the work; the rest is for blocks that nothing has read.
constexpr double NumbersPart = 0.9;

/// @return the ids of the blocks that have been read without damage.
std::set<std::uint64_t> checkModel(const MoxReader::File& file, FindingList& findings,
                                   const CheckProgress& progress) {
    ModelScan scan(file, findings);
    scan.run();
    const auto& nodes = scan.nodes();
    const bool areComplete = scan.hasAllDescriptors();
    checkTree(nodes, findings);
    const MoxReader::LinkTable links(nodes);
    checkDatasets(nodes, links, areComplete, findings);
    HeavyCheck heavy(file, nodes, areComplete, findings);
    const auto facts = heavy.run(progress);
    checkSense(nodes, links, facts, findings);
    const NodePaths paths(nodes);
    for (auto& finding : findings.findings()) {
        if (finding.place.node) {
            finding.place.path = paths.of(*finding.place.node);
        }
    }
    auto sound = scan.soundBlocks();
    sound.merge(heavy.soundBlocks());
    return sound;
}

} // namespace

// The streams are read first, and then only those blocks that nothing has read or that are damaged: to
// decompress a block takes longer than all else that is done with it.
void checkFile(const std::shared_ptr<MoxReader::Source>& source, FindingList& findings,
               const CheckProgress& progress) {
    auto index = MoxReader::scanIndex(*source);
    checkIndex(index, findings);
    const MoxReader::File file(source, std::move(index));
    if (file.blocks().empty()) {
        return;
    }
    FindingList ofModel(findings.limit());
    const auto sound = checkModel(file, ofModel, [&](double part) { progress(NumbersPart * part); });
    checkBlocks(file, sound, findings,
                [&](double part) { progress(NumbersPart + (1 - NumbersPart) * part); });
    findings.append(ofModel);
}

} // namespace MoxTool
