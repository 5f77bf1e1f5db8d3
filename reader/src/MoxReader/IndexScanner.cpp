#include "MoxReader/IndexScanner.h"

#include "MoxReader/Displacement.h"
#include "MoxReader/LittleEndian.h"

#include <algorithm>
#include <utility>

namespace MoxReader {

IndexScanner::IndexScanner(Source& source) : source_(source) {
    index_.fileSize = source.size();
    index_.end = Format::FirstBlockPosition;
}

RawIndex IndexScanner::scan() {
    if (readFront()) {
        walkTables();
        if (isBroken_) {
            settleByBlocks(source_, index_);
        }
        settlePlaces(source_, index_);
    }
    return std::move(index_);
}

bool IndexScanner::readFront() {
    if (index_.fileSize < Format::Signature.size()) {
        addDamage(ErrorCode::Truncated, {.fileOffset = 0});
        return false;
    }
    readSignature();
    if (index_.fileSize < Format::HeadLengthPosition) {
        addDamage(ErrorCode::Truncated, {.fileOffset = Format::Signature.size()});
        return false;
    }
    readVersion();
    return readHeadLength();
}

void IndexScanner::walkTables() {
    std::optional<IndexTable> table = IndexTable{.position = Format::HeadTablePosition};
    auto expectedCount = Format::HeadRecords;
    while (table) {
        if (!readTable(*table, expectedCount)) {
            return;
        }
        table = findNextTable();
        expectedCount = Format::IndexBlockRecords;
    }
}

void IndexScanner::readSignature() {
    source_.read(0, index_.signature);
    if (index_.signature != Format::Signature) {
        addDamage(ErrorCode::BadSignature, {.fileOffset = 0});
    }
}

void IndexScanner::readVersion() {
    std::array<std::uint8_t, Format::VersionSize> bytes{};
    source_.read(Format::Signature.size(), bytes);
    index_.version.assign(bytes.begin(), std::ranges::find(bytes, 0));
    if (index_.version != Format::SupportedVersion) {
        addDamage(ErrorCode::UnsupportedFileVersion, {.fileOffset = Format::Signature.size()});
    }
}

bool IndexScanner::readHeadLength() {
    const Place place = {.fileOffset = Format::HeadLengthPosition};
    if (index_.fileSize < Format::HeadTablePosition) {
        addDamage(ErrorCode::NotFinished, place);
        return false;
    }
    std::array<std::uint8_t, 4> bytes{};
    source_.read(Format::HeadLengthPosition, bytes);
    index_.headLength = littleEndian<std::uint32_t>(bytes.data());
    if (index_.headLength == 0u) {
        addDamage(ErrorCode::NotFinished, place);
        return false;
    }
    if (index_.headLength != Format::tableSize(Format::HeadRecords)) {
        addDamage(ErrorCode::BadIndexTable, place);
        return false;
    }
    return true;
}

bool IndexScanner::readTable(IndexTable table, std::uint32_t expectedCount) {
    const Place place = {.fileOffset = table.position, .blockId = table.blockId};
    const auto size = Format::tableSize(expectedCount);
    if (table.position > index_.fileSize || size > index_.fileSize - table.position) {
        addDamage(ErrorCode::Truncated, place);
        return false;
    }
    std::vector<std::uint8_t> bytes(size);
    source_.read(table.position, bytes);
    table.count = littleEndian<std::uint32_t>(bytes.data());
    table.firstId = index_.blocks.size();
    index_.tables.push_back(table);
    if (table.count != expectedCount) {
        addDamage(ErrorCode::BadIndexTable, place);
        return false;
    }
    for (std::uint32_t row = 0; row < table.count; ++row) {
        addRecord(table, row, std::span(bytes).subspan(Format::tableSize(row)).first<Format::RecordSize>());
    }
    return true;
}

void IndexScanner::addRecord(const IndexTable& table, std::uint32_t row,
                             std::span<const std::uint8_t, Format::RecordSize> bytes) {
    auto record = parseBlockRecord(bytes);
    record.id = index_.blocks.size();
    record.recordPosition = table.position + Format::tableSize(row);
    record.position = sum_;
    sum_ += record.length;
    if (record.nameLength != Format::NameSize) {
        addDamage(ErrorCode::BadIndexRecord, {.fileOffset = record.recordPosition, .blockId = record.id});
    }
    index_.blocks.push_back(std::move(record));
}

// The records after an Index Block's own are in its table, so its record is always the last of the table that
// names it.
std::optional<IndexTable> IndexScanner::findNextTable() {
    const auto first = index_.blocks.begin() + static_cast<std::ptrdiff_t>(index_.tables.back().firstId);
    const auto found =
        std::find_if(first, index_.blocks.end(), [](const auto& block) { return block.isIndexBlock(); });
    if (found == index_.blocks.end()) {
        settleBySize(source_, index_);
        return std::nullopt;
    }
    const bool isLast = std::next(found) == index_.blocks.end();
    if (!isLast || found->length != Format::tableSize(Format::IndexBlockRecords)) {
        addDamage(ErrorCode::BadIndexTable, {.fileOffset = found->recordPosition, .blockId = found->id});
        return std::nullopt;
    }
    auto& table = index_.tables.back();
    settleByNextTable(source_, index_, table, *found);
    return IndexTable{.position = found->position - table.displacement,
                      .blockId = found->id,
                      .displacement = table.displacement};
}

void IndexScanner::addDamage(ErrorCode code, Place place) {
    isBroken_ = isBroken_ || code == ErrorCode::Truncated || code == ErrorCode::BadIndexTable ||
                code == ErrorCode::BadIndexRecord;
    index_.damage.emplace_back(code, std::move(place));
}

} // namespace MoxReader
