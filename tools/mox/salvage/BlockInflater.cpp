#include "BlockInflater.h"

#include <MoxReader/Format.h>

#include <algorithm>
#include <new>
#include <string_view>

namespace MoxTool {

using MoxReader::ErrorCode;

namespace {

constexpr std::size_t FirstInflated = 256; ///< Random bytes seldom pass for more of a stream.
constexpr std::size_t MostInflated = 65536;

} // namespace

BlockInflater::BlockInflater(MoxReader::Source& source)
    : source_(source), input_(MostInflated), output_(MostInflated) {
    if (inflateInit(&zlib_) != Z_OK) {
        throw std::bad_alloc();
    }
}

BlockInflater::~BlockInflater() {
    inflateEnd(&zlib_);
}

BlockAttempt BlockInflater::run(std::uint64_t offset, std::uint64_t end, const Sink& sink) {
    startAt(offset, end);
    BlockAttempt attempt{.offset = offset};
    attempt.damage =
        takeContentLength(attempt.stated) ? inflateContent(attempt, sink) : ErrorCode::ContentLengthMissing;
    attempt.read = position_ - offset;
    attempt.stored = attempt.read - zlib_.avail_in;
    return attempt;
}

void BlockInflater::startAt(std::uint64_t offset, std::uint64_t end) {
    inflateReset(&zlib_);
    position_ = offset;
    limit_ = end;
    pieceSize_ = FirstInflated;
    refill();
}

void BlockInflater::refill() {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(pieceSize_, limit_ - position_));
    source_.read(position_, std::span(input_).first(size));
    position_ += size;
    zlib_.next_in = input_.data();
    zlib_.avail_in = static_cast<uInt>(size);
    pieceSize_ = std::min(2 * pieceSize_, MostInflated);
}

bool BlockInflater::takeContentLength(std::uint64_t& length) {
    constexpr auto WordSize = MoxReader::Format::ContentWordSize;
    if (zlib_.avail_in < WordSize) {
        return false;
    }
    for (auto i = WordSize; i-- > 0;) {
        length = length << 8 | zlib_.next_in[i];
    }
    zlib_.next_in += WordSize;
    zlib_.avail_in -= WordSize;
    return true;
}

// Once all of the content has been inflated, one byte of room shows whether there is more.
std::optional<ErrorCode> BlockInflater::inflateContent(BlockAttempt& attempt, const Sink& sink) {
    int status = Z_OK;
    while (status == Z_OK) {
        if (zlib_.avail_in == 0) {
            refill();
        }
        const auto missing = std::min<std::uint64_t>(output_.size(), attempt.stated - attempt.inflated);
        const auto room = static_cast<uInt>(std::max<std::uint64_t>(missing, 1));
        zlib_.next_out = output_.data();
        zlib_.avail_out = room;
        status = inflate(&zlib_, Z_NO_FLUSH);
        const auto count = room - zlib_.avail_out;
        if (count > missing) {
            return ErrorCode::ContentTooLong;
        }
        sink(std::span(output_).first(count));
        attempt.inflated += count;
    }
    return judge(status, attempt);
}

std::optional<ErrorCode> BlockInflater::judge(int status, const BlockAttempt& attempt) const {
    // zlib distinguishes a wrong checksum from other damage only by its message.
    constexpr std::string_view ChecksumMessage = "incorrect data check";
    switch (status) {
    case Z_STREAM_END:
        return attempt.inflated < attempt.stated ? std::optional(ErrorCode::ContentTooShort) : std::nullopt;
    case Z_BUF_ERROR: // there is no more input and no more output
        return ErrorCode::ZlibIncomplete;
    case Z_MEM_ERROR:
        throw std::bad_alloc();
    default:
        return zlib_.msg != nullptr && zlib_.msg == ChecksumMessage ? ErrorCode::ChecksumMismatch
                                                                    : ErrorCode::ZlibDamaged;
    }
}

} // namespace MoxTool
