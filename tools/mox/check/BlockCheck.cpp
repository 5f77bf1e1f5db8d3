#include "BlockCheck.h"

#include <MoxReader/BlockContent.h>

#include <optional>

namespace MoxTool {

namespace {

// Only a compressed block holds more than its record says. A free entry has no bytes that could be missing.
std::optional<MoxReader::ErrorCode> findDamage(const MoxReader::File& file,
                                               const MoxReader::BlockRecord& block) {
    if (block.isEmptyEntry()) {
        return std::nullopt;
    }
    if (const auto damage = MoxReader::findLengthDamage(block, file.size());
        damage || !block.isCompressed()) {
        return damage;
    }
    return MoxReader::readBlockContent(file.source(), block).damage;
}

} // namespace

std::set<std::uint64_t> checkBlocks(const MoxReader::File& file, FindingList& findings,
                                    const CheckProgress& progress) {
    std::set<std::uint64_t> damaged;
    for (const auto& block : file.blocks()) {
        progress(static_cast<double>(block.position) / static_cast<double>(file.size()));
        const auto damage = findDamage(file, block);
        if (!damage) {
            continue;
        }
        damaged.insert(block.id);
        findings.add(brokenRule(*damage), std::string(MoxReader::errorText(*damage)),
                     {.offset = block.position, .block = block.id, .stream = block.name});
    }
    return damaged;
}

} // namespace MoxTool
