#include "SalvageReport.h"

#include "../common/visibleText.h"
#include "describeLoss.h"
#include "indexState.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace MoxTool {

namespace {

constexpr const char* ClosingNote =
    "a writer puts blocks of numbers on disk as they fill, and all else when it closes the file; if it was "
    "stopped while it closed it, the last blocks can hold some of what is listed as lost";

constexpr const char* PartialNote =
    "a file named .part.raw or .damaged.raw holds a block up to where it is cut off or its damage showed, "
    "which can be long after the damage itself; the checksum of a block stands at its end, so nothing "
    "vouches for these bytes";

constexpr const char* PayloadNote =
    "a raw file of numbers holds datasets one after the other, each component by component and each "
    "component as its lowest bytes, then its second bytes and so on; without descriptors nothing says "
    "where one begins";

std::map<std::uint64_t, const MoxReader::BlockRecord*> recordsByPlace(const MoxReader::RawIndex& index) {
    std::map<std::uint64_t, const MoxReader::BlockRecord*> records;
    for (const auto& record : index.blocks) {
        records[record.position] = &record;
    }
    return records;
}

} // namespace

SalvageReport::SalvageReport(std::string path, std::string wrong, const MoxReader::RawIndex& index,
                             const BlockWalk& walk)
    : path_(std::move(path)),
      wrong_(std::move(wrong)),
      index_(index),
      walk_(walk),
      records_(recordsByPlace(index_)),
      lost_(describeLoss(index_, walk_.blocks())),
      notes_(listNotes()) {}

std::vector<std::string> SalvageReport::listNotes() const {
    std::vector<std::string> list;
    if (const auto from = walk_.unsearchedFrom()) {
        list.push_back(fmt::format("from offset {} on no more blocks were searched for, because too much of "
                                   "the file looks like beginnings of blocks",
                                   *from));
    }
    if (isUnfinished(index_)) {
        list.emplace_back(ClosingNote);
    }
    if (const auto unnamed = countUnnamed(); unnamed > 0 && !index_.blocks.empty()) {
        list.push_back(fmt::format("the index has no block where {} of the saved ones stand; they can be "
                                   "among those that are listed as lost",
                                   unnamed));
    }
    if (countWhole() < walk_.blocks().size()) {
        list.emplace_back(PartialNote);
    }
    list.emplace_back(PayloadNote);
    return list;
}

void SalvageReport::print(std::FILE* out) const {
    fmt::print(out, "{}: {}\n", visibleText(path_), wrong_);
    fmt::print(out, "saved: {} blocks whole, {} cut off or damaged\n", countWhole(),
               walk_.blocks().size() - countWhole());
    for (const auto& block : walk_.blocks()) {
        fmt::print(out, "{}\n", lineOf(block));
    }
    for (const auto& gap : walk_.gaps()) {
        fmt::print(out, "not saved  offset {}, {} bytes: {}\n", gap.offset, gap.size, gap.what);
    }
    for (const auto& line : lost_) {
        fmt::print(out, "lost: {}\n", line);
    }
    for (const auto& line : notes_) {
        fmt::print(out, "note: {}\n", line);
    }
}

std::string SalvageReport::lineOf(const SalvagedBlock& block) const {
    const auto& extent = block.extent;
    auto line = fmt::format("{}  offset {}, {} bytes, inflated {}", block.fileName(), extent.offset,
                            extent.stored, extent.inflated);
    if (const auto name = nameOf(block); !name.empty()) {
        line += fmt::format(", \"{}\"", visibleText(name));
    }
    if (!block.isWhole()) {
        line += fmt::format(", {} block of {}: {}", extent.isCutOff() ? "PART of a" : "DAMAGED",
                            extent.stated, MoxReader::errorText(*extent.damage));
    }
    return line;
}

Json SalvageReport::toJson() const {
    Json json = {{"file", jsonText(path_)}, {"state", wrong_}, {"fileSize", index_.fileSize}};
    json["blocks"] = entriesOf(true);
    json["partial"] = entriesOf(false);
    json["notSaved"] = Json::array();
    for (const auto& gap : walk_.gaps()) {
        json["notSaved"].push_back({{"offset", gap.offset}, {"size", gap.size}, {"what", gap.what}});
    }
    json["lost"] = lost_;
    json["notes"] = notes_;
    return json;
}

Json SalvageReport::entriesOf(bool whole) const {
    auto entries = Json::array();
    for (const auto& block : walk_.blocks()) {
        if (block.isWhole() == whole) {
            entries.push_back(entryOf(block));
        }
    }
    return entries;
}

Json SalvageReport::entryOf(const SalvagedBlock& block) const {
    const auto name = nameOf(block);
    Json entry = {{"file", block.fileName()},
                  {"offset", block.extent.offset},
                  {"stored", block.extent.stored},
                  {"content", block.extent.stated}};
    if (!block.isWhole()) {
        entry["inflated"] = block.extent.inflated;
        entry["damage"] = MoxReader::errorText(*block.extent.damage);
    }
    entry["name"] = name.empty() ? Json() : jsonText(name);
    return entry;
}

std::size_t SalvageReport::countWhole() const {
    return static_cast<std::size_t>(std::ranges::count_if(walk_.blocks(), &SalvagedBlock::isWhole));
}

std::size_t SalvageReport::countUnnamed() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(walk_.blocks(), [&](const auto& block) { return nameOf(block).empty(); }));
}

/// @return an empty text if the index has no block there.
std::string SalvageReport::nameOf(const SalvagedBlock& block) const {
    const auto found = records_.find(block.extent.offset);
    return found != records_.end() && !found->second->isEmptyEntry() ? found->second->name : "";
}

} // namespace MoxTool
