#include "IndexCheck.h"

#include "../common/displacementText.h"
#include "../common/visibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace MoxTool {

namespace {

using MoxReader::BlockRecord;
using MoxReader::RawIndex;
namespace Format = MoxReader::Format;

/// What the record of a block of some name may look like.
struct KnownName {
    std::string_view name;
    std::uint8_t flags;
    std::uint8_t otherFlags; ///< Equal to flags if there is only one possibility.
};

constexpr std::uint8_t Streamed = Format::FlagCompressed | Format::FlagFreezable;

constexpr std::array KnownNames = {
    KnownName{Format::EmptyBlockName, 0, 0},
    KnownName{Format::IndexBlockName, Format::FlagFreezable, Format::FlagFreezable},
    KnownName{Format::HeavyStream, Format::FlagCompressed, Streamed},
    KnownName{Format::TreeStream, Format::FlagCompressed, Format::FlagCompressed},
    KnownName{Format::LightStream, Format::FlagCompressed, Format::FlagCompressed},
    KnownName{Format::AttributesStream, Format::FlagCompressed, Format::FlagCompressed},
    KnownName{Format::ResourcesStream, Format::FlagCompressed, Format::FlagCompressed},
    KnownName{Format::GlobalStream, Format::FlagCompressed, Format::FlagCompressed},
};

FindingPlace placeOfBlock(const BlockRecord& record) {
    return {.offset = record.recordPosition, .block = record.id};
}

bool isPadded(const BlockRecord& record) {
    return std::all_of(record.rawName.begin() + static_cast<std::ptrdiff_t>(record.name.size()),
                       record.rawName.end(), [](auto byte) { return byte == 0; });
}

void checkNameAndFlags(const BlockRecord& record, FindingList& findings) {
    const auto known = std::ranges::find(KnownNames, std::string_view(record.name), &KnownName::name);
    if (known == KnownNames.end()) {
        findings.add(RuleId::BlockName, fmt::format("unknown block name \"{}\"", visibleText(record.name)),
                     placeOfBlock(record));
        return;
    }
    if (!isPadded(record)) {
        findings.add(RuleId::BlockName, "bytes after the end of the name", placeOfBlock(record));
    }
    if (record.flags != known->flags && record.flags != known->otherFlags) {
        findings.add(
            RuleId::BlockFlags,
            fmt::format("flags 0x{:02x} on a block named \"{}\"", record.flags, visibleText(record.name)),
            placeOfBlock(record));
    }
}

void checkRecord(const BlockRecord& record, FindingList& findings) {
    const auto number = static_cast<std::uint8_t>(record.id + 1);
    if (record.number != number) {
        findings.add(RuleId::RecordNumber, fmt::format("number {} instead of {}", record.number, number),
                     placeOfBlock(record));
    }
    if (record.reserved != 0) {
        findings.add(RuleId::ReservedByte, fmt::format("it is {}", record.reserved), placeOfBlock(record));
    }
    checkNameAndFlags(record, findings);
    if (record.isEmptyEntry() && record.length != 0) {
        findings.add(RuleId::FreeEntries, fmt::format("a free entry of {} bytes", record.length),
                     placeOfBlock(record));
    }
}

void checkFreeEntriesAreLast(const RawIndex& index, FindingList& findings) {
    const auto firstFree = std::ranges::find_if(index.blocks, &BlockRecord::isEmptyEntry);
    const auto used = std::find_if(firstFree, index.blocks.end(),
                                   [](const auto& record) { return !record.isEmptyEntry(); });
    if (used != index.blocks.end()) {
        findings.add(RuleId::FreeEntries, "a block in use stands after a free entry", placeOfBlock(*used));
    }
}

void checkSize(const RawIndex& index, FindingList& findings) {
    if (index.end == index.fileSize || index.blocks.empty()) {
        return;
    }
    const bool isShort = index.end > index.fileSize;
    findings.add(RuleId::FileSize,
                 fmt::format("the file is {} bytes {} than its blocks",
                             isShort ? index.end - index.fileSize : index.fileSize - index.end,
                             isShort ? "shorter" : "longer"),
                 {.offset = std::min(index.end, index.fileSize)});
}

void checkPlaces(const RawIndex& index, FindingList& findings) {
    for (const auto* table : findRestarts(index)) {
        findings.add(
            RuleId::BlockPlaces,
            fmt::format("the blocks after this Index Block lie {} bytes too low, since a single dataset "
                        "filled the block before it; they can be read unless others lie over them",
                        table->displacement),
            {.offset = table->position, .block = table->blockId});
    }
}

} // namespace

void checkIndex(const RawIndex& index, FindingList& findings) {
    checkPlaces(index, findings);
    for (const auto& damage : index.damage) {
        const bool isHead = damage.place().fileOffset == Format::HeadLengthPosition;
        findings.add(isHead ? RuleId::HeadIndex : brokenRule(damage.code()),
                     std::string(MoxReader::errorText(damage.code())),
                     {.offset = damage.place().fileOffset, .block = damage.place().blockId});
    }
    for (const auto& record : index.blocks) {
        checkRecord(record, findings);
    }
    checkFreeEntriesAreLast(index, findings);
    checkSize(index, findings);
}

} // namespace MoxTool
