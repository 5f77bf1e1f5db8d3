#include "MoxReader/Displacement.h"

#include "MoxReader/BlockContent.h"
#include "MoxReader/ByteRanges.h"
#include "MoxReader/LittleEndian.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace MoxReader {

namespace {

constexpr std::uint32_t TableSize = Format::tableSize(Format::IndexBlockRecords);
constexpr std::uint8_t StreamedFlags = Format::FlagCompressed | Format::FlagFreezable;

bool isSoundRecord(const BlockRecord& record, std::uint64_t id) {
    return record.number == static_cast<std::uint8_t>(id + 1) && record.nameLength == Format::NameSize &&
           record.reserved == 0;
}

/// Whether a whole table of an Index Block lies at a place, with records from an id on.
bool isSoundTable(Source& source, std::uint64_t position, std::uint64_t firstId) {
    if (position > source.size() || TableSize > source.size() - position) {
        return false;
    }
    std::vector<std::uint8_t> bytes(TableSize);
    source.read(position, bytes);
    if (littleEndian<std::uint32_t>(bytes.data()) != Format::IndexBlockRecords) {
        return false;
    }
    for (std::uint32_t row = 0; row < Format::IndexBlockRecords; ++row) {
        const auto record = std::span(bytes).subspan(Format::tableSize(row)).first<Format::RecordSize>();
        if (!isSoundRecord(parseBlockRecord(record), firstId + row)) {
            return false;
        }
    }
    return true;
}

/// All tables but the head index, which nothing can cover.
ByteRanges rangesOfTables(const RawIndex& index) {
    ByteRanges ranges;
    for (const auto& table : std::span(index.tables).subspan(1)) {
        ranges.add(table.position, table.position + TableSize);
    }
    return ranges;
}

std::uint64_t endOfTables(const RawIndex& index) {
    std::uint64_t end = 0;
    for (const auto& table : std::span(index.tables).subspan(1)) {
        end = std::max(end, table.position + TableSize);
    }
    return end;
}

std::uint64_t endWith(const RawIndex& index, std::uint64_t displacement) {
    return std::max(index.blocks.back().end() - displacement, endOfTables(index));
}

/// The block as it lies with a displacement.
BlockRecord moved(const BlockRecord& block, Source& source, std::uint64_t displacement) {
    auto result = block;
    result.position -= displacement;
    result.contentLength = readContentLength(source, result);
    return result;
}

/// Whether, with a displacement, all blocks of the last table, which names no Index Block, that are not "Heavy Data" and
/// that no table covers are intact.
bool isWholeWith(Source& source, const RawIndex& index, std::uint64_t displacement) {
    const auto tables = rangesOfTables(index);
    bool hasAny = false;
    for (auto id = index.tables.back().firstId; id < index.blocks.size(); ++id) {
        const auto& block = index.blocks[static_cast<std::size_t>(id)];
        if (block.isEmptyEntry() || block.name == Format::HeavyStream || block.length == 0) {
            continue;
        }
        const auto there = moved(block, source, displacement);
        if (tables.touch(there.position, there.end())) {
            continue;
        }
        if (readBlockContent(source, there).damage) {
            return false;
        }
        hasAny = true;
    }
    return hasAny;
}

void settleBlock(Source& source, BlockRecord& block, std::uint64_t displacement, const ByteRanges& later) {
    block.position -= displacement;
    const bool holdsData = !block.isEmptyEntry() && !block.isIndexBlock();
    block.isOverwritten = holdsData && later.touch(block.position, block.end());
    const bool hasLength = !block.isOverwritten || !block.isCompressed() ||
                           !later.touch(block.position, block.position + Format::ContentWordSize);
    if (hasLength) {
        block.contentLength = readContentLength(source, block);
    }
}

} // namespace

std::optional<std::uint64_t> findRestart(const RawIndex& index, const IndexTable& table) {
    if (!table.blockId) {
        return std::nullopt;
    }
    const auto* indexBlock = &index.blocks[static_cast<std::size_t>(*table.blockId)];
    const auto& before = *(indexBlock - 1);
    const auto& after = *(indexBlock + 1);
    const bool isPossible = before.name == Format::HeavyStream && before.flags == StreamedFlags &&
                            after.name == Format::HeavyStream;
    return isPossible ? std::optional(indexBlock->position) : std::nullopt;
}

void settleByNextTable(Source& source, const RawIndex& index, IndexTable& table, const BlockRecord& next) {
    const auto restart = findRestart(index, table);
    if (!restart || isSoundTable(source, next.position - table.displacement, next.id + 1)) {
        return;
    }
    if (isSoundTable(source, next.position - *restart, next.id + 1)) {
        table.displacement = *restart;
    }
}

// A table with blocks after it ends before they do, so a file without displaced blocks has exactly the size
// that its lengths add up to.
void settleBySize(Source& source, RawIndex& index) {
    auto& table = index.tables.back();
    const auto restart = findRestart(index, table);
    if (!restart) {
        return;
    }
    const auto fits = [&](std::uint64_t displacement) {
        return index.fileSize == endWith(index, displacement);
    };
    const bool isAsBefore = fits(table.displacement) &&
                            (table.displacement == 0 || isWholeWith(source, index, table.displacement));
    if (!isAsBefore && fits(*restart) && isWholeWith(source, index, *restart)) {
        table.displacement = *restart;
    }
}

void settleByBlocks(Source& source, RawIndex& index) {
    const auto last = std::find_if(index.tables.rbegin(), index.tables.rend(),
                                   [&](const auto& each) { return each.firstId < index.blocks.size(); });
    const auto restart = last != index.tables.rend() ? findRestart(index, *last) : std::nullopt;
    if (!restart) {
        return;
    }
    auto& table = *last;
    const auto isWholeAt = [&](const BlockRecord& block, std::uint64_t displacement) {
        return !readBlockContent(source, moved(block, source, displacement)).damage;
    };
    for (auto id = table.firstId; id < index.blocks.size(); ++id) {
        const auto& block = index.blocks[static_cast<std::size_t>(id)];
        const bool isInside = block.end() - table.displacement <= source.size();
        if (!isSoundRecord(block, id) || !block.isCompressed() || !isInside) {
            return;
        }
        if (isWholeAt(block, table.displacement)) {
            return;
        }
        if (isWholeAt(block, *restart)) {
            table.displacement = *restart;
            return;
        }
    }
}

void settlePlaces(Source& source, RawIndex& index) {
    if (index.blocks.empty()) {
        return;
    }
    index.end = endWith(index, index.tables.back().displacement);
    const bool isDisplaced = index.isDisplaced();
    auto later = isDisplaced ? rangesOfTables(index) : ByteRanges();
    auto after = index.blocks.end();
    for (auto table = index.tables.rbegin(); table != index.tables.rend(); ++table) {
        const auto first = index.blocks.begin() + static_cast<std::ptrdiff_t>(table->firstId);
        if (first == after) {
            continue;
        }
        for (auto block = first; block != after; ++block) {
            settleBlock(source, *block, table->displacement, later);
        }
        if (isDisplaced) {
            later.add(first->position, std::prev(after)->end());
        }
        after = first;
    }
}

} // namespace MoxReader
