#include "MoxReader/Inflater.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

namespace MoxReader {

Inflater::Inflater(Source& source, std::uint64_t position, std::uint64_t stored)
    : source_(source), position_(position), stored_(stored) {
    if (inflateInit(&zlib_) != Z_OK) {
        throw std::bad_alloc();
    }
}

Inflater::~Inflater() {
    inflateEnd(&zlib_);
}

BlockContent Inflater::run(std::uint32_t contentLength, std::vector<std::uint8_t> room) {
    BlockContent content{.bytes = std::move(room), .damage = std::nullopt};
    content.damage = inflateAll(content.bytes, contentLength);
    content.bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(produced_, contentLength)));
    return content;
}

std::optional<ErrorCode> Inflater::inflateAll(std::vector<std::uint8_t>& content, std::size_t contentLength) {
    while (true) {
        refill();
        offerOutput(content, contentLength);
        const auto offered = zlib_.avail_out;
        const int result = inflate(&zlib_, Z_NO_FLUSH);
        produced_ += offered - zlib_.avail_out;
        if (produced_ > contentLength) {
            return ErrorCode::ContentTooLong;
        }
        if (result == Z_STREAM_END) {
            return judgeEnd(contentLength);
        }
        if (const auto damage = judgeStep(result)) {
            return damage;
        }
    }
}

void Inflater::refill() {
    if (zlib_.avail_in > 0 || stored_ == 0) {
        return;
    }
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(stored_, chunk_.size()));
    source_.read(position_, std::span(chunk_).first(size));
    position_ += size;
    stored_ -= size;
    zlib_.next_in = chunk_.data();
    zlib_.avail_in = static_cast<uInt>(size);
}

void Inflater::offerOutput(std::vector<std::uint8_t>& content, std::size_t contentLength) {
    if (produced_ == content.size()) {
        content.resize(std::min(contentLength, content.size() + PieceSize));
    }
    const auto room = content.size() - static_cast<std::size_t>(produced_);
    zlib_.next_out = room > 0 ? content.data() + produced_ : &surplus_;
    zlib_.avail_out = room > 0 ? static_cast<uInt>(room) : 1;
}

std::optional<ErrorCode> Inflater::judgeStep(int result) const {
    // Only zlib's message distinguishes a wrong checksum from other damage.
    constexpr std::string_view ChecksumMessage = "incorrect data check";
    switch (result) {
    case Z_OK:
        return std::nullopt;
    case Z_BUF_ERROR:
        return ErrorCode::ZlibIncomplete;
    case Z_MEM_ERROR:
        throw std::bad_alloc();
    default:
        return zlib_.msg != nullptr && zlib_.msg == ChecksumMessage ? ErrorCode::ChecksumMismatch
                                                                    : ErrorCode::ZlibDamaged;
    }
}

std::optional<ErrorCode> Inflater::judgeEnd(std::size_t contentLength) const {
    if (produced_ < contentLength) {
        return ErrorCode::ContentTooShort;
    }
    if (unread() > 0) {
        return ErrorCode::TrailingBytes;
    }
    return std::nullopt;
}

} // namespace MoxReader
