#include "countLosses.h"

#include <algorithm>
#include <map>

namespace MoxTool {

namespace {

// A block without bytes has lost its content, as has one that was overwritten, whatever is at its place.
const SalvagedBlock* findSaved(const std::vector<SalvagedBlock>& saved,
                               const MoxReader::BlockRecord& record) {
    const auto offsetOf = [](const SalvagedBlock& block) { return block.extent.offset; };
    const auto found = std::ranges::lower_bound(saved, record.position, {}, offsetOf);
    const bool isThere = found != saved.end() && offsetOf(*found) == record.position;
    return isThere && record.length > 0 && !record.isOverwritten ? &*found : nullptr;
}

void count(StreamLoss& loss, const MoxReader::BlockRecord& record, const SalvagedBlock* saved) {
    ++loss.blocks;
    if (saved != nullptr && saved->isWhole()) {
        return;
    }
    ++loss.missing;
    loss.unread += record.length;
    if (saved == nullptr) {
        return;
    }
    ++loss.begun;
    loss.unread -= std::min<std::uint64_t>(record.length, saved->extent.stored);
}

} // namespace

std::vector<StreamLoss> countLosses(const MoxReader::RawIndex& index,
                                    const std::vector<SalvagedBlock>& saved) {
    std::vector<StreamLoss> losses;
    std::map<std::string, std::size_t> places; // in losses, by name
    for (const auto& record : index.blocks) {
        if (record.isIndexBlock() || record.isEmptyEntry()) {
            continue;
        }
        const auto [entry, isNew] = places.try_emplace(record.name, losses.size());
        if (isNew) {
            losses.push_back({.name = record.name});
        }
        count(losses[entry->second], record, findSaved(saved, record));
    }
    return losses;
}

} // namespace MoxTool
