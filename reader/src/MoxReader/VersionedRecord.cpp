#include "MoxReader/VersionedRecord.h"

namespace MoxReader {

VersionedRecord::VersionedRecord(StreamReader& stream) : stream_(stream), start_(stream.place()) {
    const auto begin = stream.position();
    const auto size = stream.readNumber<std::uint32_t>();
    if (size > stream.size() - begin) {
        throw stream.damage() ? *stream.damage() : Error(ErrorCode::BadRecordSize, start_);
    }
    end_ = begin + size;
    version_ = stream.readString();
}

void VersionedRecord::finish() {
    if (stream_.position() > end_) {
        throw Error(ErrorCode::BadRecordSize, start_);
    }
    stream_.seek(end_);
}

} // namespace MoxReader
