#include "findFlaw.h"

#include "../common/displacementText.h"

#include <MoxReader/BlockContent.h>
#include <MoxReader/Error.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace MoxTool {

namespace {

std::string flawText(const MoxReader::BlockRecord& block, MoxReader::ErrorCode damage) {
    return fmt::format("block {} at {}: {}", block.id, block.position, MoxReader::errorText(damage));
}

} // namespace

std::optional<std::string> findIndexFlaw(const MoxReader::File& file) {
    const auto& index = file.index();
    if (auto text = displacementText(index)) {
        return text;
    }
    if (!index.damage.empty()) {
        return index.damage.front().what();
    }
    for (const auto& block : index.blocks) {
        if (const auto damage = MoxReader::findLengthDamage(block, file.size())) {
            return flawText(block, *damage);
        }
    }
    if (index.end != file.size()) {
        return fmt::format("the file has {} bytes after its last block", file.size() - index.end);
    }
    return std::nullopt;
}

std::optional<std::string> findBlockFlaw(const MoxReader::File& file, const ProgressReport& report) {
    if (auto flaw = findIndexFlaw(file)) {
        return flaw;
    }
    for (const auto& block : file.blocks()) {
        report(static_cast<double>(block.position) / static_cast<double>(file.size()));
        if (const auto damage = MoxReader::readBlockContent(file.source(), block).damage) {
            return flawText(block, *damage);
        }
    }
    return std::nullopt;
}

std::optional<std::string> findUnwrittenBlock(const MoxReader::File& file) {
    for (const auto& block : file.blocks()) {
        std::array<std::uint8_t, 4> end{};
        if (!block.isCompressed() || block.length < end.size()) {
            continue;
        }
        file.source().read(block.end() - end.size(), end);
        const bool isZero = std::ranges::all_of(end, [](auto byte) { return byte == 0; });
        const auto damage = isZero ? MoxReader::readBlockContent(file.source(), block).damage : std::nullopt;
        if (damage) {
            return flawText(block, *damage);
        }
    }
    return std::nullopt;
}

} // namespace MoxTool
