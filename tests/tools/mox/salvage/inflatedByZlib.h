#pragma once

#include <zlib.h>

#include <cstdint>
#include <span>
#include <string>

/// What zlib makes of all the bytes of a stream, or of only the first ones.
inline std::string inflatedByZlib(std::span<const std::uint8_t> stream) {
    constexpr std::size_t Room = 1 << 20;
    std::string content(Room, '\0');
    z_stream zlib{};
    inflateInit(&zlib);
    zlib.next_in = const_cast<Bytef*>(stream.data());
    zlib.avail_in = static_cast<uInt>(stream.size());
    zlib.next_out = reinterpret_cast<Bytef*>(content.data());
    zlib.avail_out = static_cast<uInt>(Room);
    inflate(&zlib, Z_NO_FLUSH);
    content.resize(zlib.total_out);
    inflateEnd(&zlib);
    return content;
}
