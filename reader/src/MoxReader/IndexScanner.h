#pragma once

#include "MoxReader/RawIndex.h"

namespace MoxReader {

/// One walk along the front of a file and its chain of index tables; see scanIndex().
class IndexScanner {
public:
    explicit IndexScanner(Source& source);

    RawIndex scan();

private:
    bool readFront();
    void walkTables();
    void readSignature();
    void readVersion();
    bool readHeadLength();
    bool readTable(IndexTable table, std::uint32_t expectedCount);
    void addRecord(const IndexTable& table, std::uint32_t row,
                   std::span<const std::uint8_t, Format::RecordSize> bytes);
    std::optional<IndexTable> findNextTable();
    void addDamage(ErrorCode code, Place place);

    Source& source_;
    RawIndex index_;
    bool isBroken_ = false;                          ///< A table can't be read or has a wrong record.
    std::uint64_t sum_ = Format::FirstBlockPosition; ///< The place that the lengths so far add up to.
};

} // namespace MoxReader
