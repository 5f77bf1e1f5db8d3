#include "PartFile.h"

#include "../check/DatasetCheck.h"
#include "../check/FileCheck.h"
#include "../check/HeavyCheck.h"
#include "../check/IndexCheck.h"
#include "../check/ModelScan.h"
#include "../check/TreeCheck.h"
#include "../common/Failure.h"
#include "../common/NodePaths.h"
#include "../common/checkIsFile.h"
#include "../common/foreignKind.h"
#include "../common/readFailure.h"
#include "../common/utf8Path.h"
#include "titleByStepName.h"

#include <MoxReader/BlockContent.h>
#include <MoxReader/FileSource.h>
#include <MoxReader/HeavyData.h>

#include <fmt/format.h>

#include <memory>
#include <string_view>
#include <variant>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

// Only the first error counts, and notes have no limit of their own.
constexpr std::size_t MostOfARule = 1;

void refuseErrors(const std::string& path, const FindingList& findings) {
    for (const auto& finding : findings.findings()) {
        const auto& rule = ruleOf(finding.rule);
        if (rule.level == Level::Error) {
            throw Failure(path, fmt::format("is not whole: error {} {}: {}; mox check lists all damage",
                                            static_cast<int>(rule.id), rule.title, finding.reason));
        }
    }
}

void checkLengths(const MoxReader::File& file, FindingList& findings) {
    for (const auto& block : file.blocks()) {
        const auto damage =
            block.isEmptyEntry() ? std::nullopt : MoxReader::findLengthDamage(block, file.size());
        if (damage) {
            findings.add(brokenRule(*damage), fmt::format("block {} at {}: {}", block.id, block.position,
                                                          MoxReader::errorText(*damage)));
        }
    }
}

// The checks of mox check, without those that inflate blocks of numbers.
void checkAllButNumbers(const std::string& path, const MoxReader::File& file) {
    FindingList findings(MostOfARule);
    checkIndex(file.index(), findings);
    refuseErrors(path, findings);
    checkLengths(file, findings);
    refuseErrors(path, findings);
    ModelScan scan(file, findings);
    scan.run();
    checkTree(scan.nodes(), findings);
    refuseErrors(path, findings);
    const MoxReader::LinkTable links(scan.nodes());
    checkDatasets(scan.nodes(), links, scan.hasAllDescriptors(), findings);
    HeavyCheck(file, scan.nodes(), scan.hasAllDescriptors(), findings).runOnPlaces();
    refuseErrors(path, findings);
}

void checkAll(const std::string& path, const MoxReader::File& file, const PartProgress& progress) {
    FindingList findings(MostOfARule);
    checkFile(file.shareSource(), findings, progress);
    refuseErrors(path, findings);
}

std::shared_ptr<MoxReader::Source> openPart(const std::string& path) {
    checkIsFile(path);
    const auto source =
        explainErrors(path, [&] { return std::make_shared<MoxReader::FileSource>(pathOf(path)); });
    refuseForeignFile(path, *source);
    return source;
}

MoxReader::Model readWith(const std::string& path, const MoxReader::File& file, PartCheck check,
                          const PartProgress& progress) {
    return explainErrors(path, [&] {
        if (check == PartCheck::Everything) {
            checkAll(path, file, progress);
        } else if (check == PartCheck::Structure) {
            checkAllButNumbers(path, file);
        }
        return MoxReader::readModel(file);
    });
}

// With an index that the checks can name the faults of.
MoxReader::File openToCheck(const std::string& path, PartCheck check) {
    const auto source = openPart(path);
    return explainErrors(path, [&] {
        auto index = MoxReader::scanIndex(*source);
        if (check == PartCheck::Repair && !index.damage.empty()) {
            throw MoxReader::Error(index.damage.front());
        }
        return MoxReader::File(source, std::move(index));
    });
}

bool isUsable(const MoxReader::File& file, const MoxReader::BlockRecord& block) {
    return !MoxReader::readBlockContent(file.source(), block).damage;
}

} // namespace

PartFile::PartFile(const std::string& path, PartCheck check, const PartProgress& progress)
    : PartFile(path, openToCheck(path, check), check, progress) {}

PartFile::PartFile(const std::string& path, const MoxReader::File& file, PartCheck check,
                   const PartProgress& progress)
    : path_(path), model_(readWith(path, file, check, progress)) {
    explainErrors(path, [&] { collectBlocks(file, check, progress); });
    if (check == PartCheck::Repair) {
        findLost();
        judgeLastBlock();
    }
}

void PartFile::collectBlocks(const MoxReader::File& file, PartCheck check, const PartProgress& progress) {
    const auto heavy = MoxReader::openHeavyStream(file, model_.nodes());
    for (std::size_t i = 0; i < heavy.blocks().size() && heavy.blockStart(i) < heavy.size(); ++i) {
        const auto& block = heavy.blocks()[i];
        progress(static_cast<double>(heavy.blockStart(i)) / static_cast<double>(heavy.size()));
        if (check != PartCheck::Repair || isUsable(file, block)) {
            blocks_.push_back({block.position, block.length, block.contentLength.value_or(0),
                               heavy.blockStart(i), block.isCompressed()});
            isLastMarked_ = block.isFreezable();
        }
    }
}

void PartFile::findLost() {
    NumberMap readable;
    for (const auto& block : blocks_) {
        readable.add(block.start, block.contentLength, block.start);
    }
    const MoxReader::LinkTable links(model_.nodes());
    const NodePaths paths(model_.nodes());
    for (const auto& node : model_.nodes()) {
        const auto title = fmt::format("{}: {}", path_, paths.of(node.id));
        if (const auto* sets = node.nodeSets();
            sets != nullptr && !readable.contains(sets->heavyPosition, sets->heavySize)) {
            lostSets_.insert(node.id);
            lost_.push_back(title + ": its sets can't be read");
        }
        if (node.geometry() != nullptr) {
            findLostDatasets(node, links, readable, title);
        }
    }
}

// What is left decides, since the mark can tell of what is lost. Nothing can be said of node sets.
void PartFile::judgeLastBlock() {
    bool hasWhole = false;
    bool hasOther = false;
    for (const auto& node : model_.nodes()) {
        if (node.nodeSets() != nullptr && isReadable(node)) {
            return;
        }
        if (node.geometry() == nullptr || blocks_.empty()) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            const auto& last = blocks_.back();
            if (!dataset.isLink && isReadable(dataset) && dataset.position >= last.start) {
                const bool isWhole =
                    dataset.position == last.start && dataset.sizeInBytes == last.contentLength;
                (isWhole ? hasWhole : hasOther) = true;
            }
        }
    }
    isLastMarked_ = hasOther || (isLastMarked_ && !hasWhole);
}

void PartFile::findLostDatasets(const Node& node, const MoxReader::LinkTable& links,
                                const NumberMap& readable, const std::string& title) {
    std::unordered_set<std::string_view> keys;
    for (const auto& dataset : node.geometry()->datasets) {
        const auto& resolution = links.resolution(dataset.nodeId, dataset.index);
        const auto* const* holder = std::get_if<const Dataset*>(&resolution);
        std::string reason;
        if (holder == nullptr) {
            reason = "its link leads nowhere";
        } else if (!hasSoundShape(**holder) ||
                   !readable.contains((*holder)->position, (*holder)->sizeInBytes)) {
            reason = "its numbers can't be read";
        } else if (!keys.insert(dataset.key).second) {
            reason = "another has its name and step";
        } else {
            continue;
        }
        unreadable_.insert(placeOf(dataset));
        lost_.push_back(fmt::format("{}: {}: {}", title, titleByStepName(dataset), reason));
    }
}

} // namespace MoxTool
