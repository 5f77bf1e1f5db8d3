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

void addSoundBlocks(std::set<std::uint64_t>& ids, const MoxReader::StreamReader& stream) {
    for (std::size_t i = 0; i < stream.blocks().size(); ++i) {
        if (stream.isKnownSound(i)) {
            ids.insert(stream.blocks()[i].id);
        }
    }
}

void checkBlocks(const MoxReader::File& file, const std::set<std::uint64_t>& sound, FindingList& findings,
                 const CheckProgress& progress) {
    for (const auto& block : file.blocks()) {
        progress(static_cast<double>(block.position) / static_cast<double>(file.size()));
        if (sound.contains(block.id)) {
            continue;
        }
        if (const auto damage = findDamage(file, block)) {
            findings.add(brokenRule(*damage), std::string(MoxReader::errorText(*damage)),
                         {.offset = block.position, .block = block.id, .stream = block.name});
        }
    }
}

} // namespace MoxTool
