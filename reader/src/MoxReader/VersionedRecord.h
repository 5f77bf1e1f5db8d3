#pragma once

#include "MoxReader/StreamReader.h"

#include <string>

namespace MoxReader {

/// The frame of a record with a size word: size, version, fields. The size covers the whole record.
class VersionedRecord {
public:
    /// Reads size and version. @throws Error  BadRecordSize if the stream is shorter than the record.
    explicit VersionedRecord(StreamReader& stream);

    const std::string& version() const { return version_; }

    /// Moves the stream to the end of the record, skipping fields that the reader does not know.
    /// @throws Error  BadRecordSize if the known fields reach past the end of the record.
    void finish();

private:
    StreamReader& stream_;
    Place start_;
    std::uint64_t end_ = 0;
    std::string version_;
};

} // namespace MoxReader
