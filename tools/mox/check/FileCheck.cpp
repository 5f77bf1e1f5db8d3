#include "FileCheck.h"

#include "../common/NodePaths.h"
#include "DatasetCheck.h"
#include "HeavyCheck.h"
#include "IndexCheck.h"
#include "ModelScan.h"
#include "SenseCheck.h"
#include "TreeCheck.h"

#include <MoxReader/File.h>

#include <utility>

namespace MoxTool {

namespace {

constexpr double BlocksPart = 0.6; ///< The blocks' share of the work; the rest is for the numbers.

void checkModel(const MoxReader::File& file, const std::set<std::uint64_t>& damagedBlocks,
                FindingList& findings, const CheckProgress& progress) {
    ModelScan scan(file, findings);
    scan.run();
    const auto& nodes = scan.nodes();
    const bool areComplete = scan.hasAllDescriptors();
    checkTree(nodes, findings);
    const MoxReader::LinkTable links(nodes);
    checkDatasets(nodes, links, areComplete, findings);
    HeavyCheck heavy(file, nodes, areComplete, damagedBlocks, findings);
    const auto facts = heavy.run([&](double part) { progress(BlocksPart + (1 - BlocksPart) * part); });
    checkSense(nodes, links, facts, findings);
    const NodePaths paths(nodes);
    for (auto& finding : findings.findings()) {
        if (finding.place.node) {
            finding.place.path = paths.of(*finding.place.node);
        }
    }
}

} // namespace

void checkFile(const std::shared_ptr<MoxReader::Source>& source, FindingList& findings,
               const CheckProgress& progress) {
    auto index = MoxReader::scanIndex(*source);
    checkIndex(index, findings);
    const MoxReader::File file(source, std::move(index));
    const auto damagedBlocks = checkBlocks(file, findings, [&](double part) { progress(BlocksPart * part); });
    if (!file.blocks().empty()) {
        checkModel(file, damagedBlocks, findings, progress);
    }
}

} // namespace MoxTool
