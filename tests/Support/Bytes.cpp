#include "Support/Bytes.h"

#include <gtest/gtest-printers.h>
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>

namespace Support {

Bytes& Bytes::u32s(std::initializer_list<std::uint32_t> values) {
    for (const std::uint32_t value : values) {
        u32(value);
    }
    return *this;
}

Bytes& Bytes::raw(std::string_view bytes) {
    content_.insert(content_.end(), bytes.begin(), bytes.end());
    return *this;
}

Bytes& Bytes::append(const ByteVector& bytes) {
    content_.insert(content_.end(), bytes.begin(), bytes.end());
    return *this;
}

Bytes& Bytes::text(std::string_view value) {
    return u32(static_cast<std::uint32_t>(value.size())).raw(value);
}

Bytes& Bytes::texts(std::initializer_list<std::string_view> values) {
    u32(static_cast<std::uint32_t>(values.size()));
    for (const std::string_view value : values) {
        text(value);
    }
    return *this;
}

Bytes& Bytes::fill(std::size_t count, std::uint8_t value) {
    content_.insert(content_.end(), count, value);
    return *this;
}

Bytes& Bytes::number(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        content_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    return *this;
}

void PrintTo(const Bytes& bytes, std::ostream* stream) {
    *stream << testing::PrintToString(bytes.content_);
}

ByteVector bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

ByteVector slice(const ByteVector& bytes, std::size_t offset, std::size_t count) {
    const std::size_t start = std::min(offset, bytes.size());
    const std::size_t end = start + std::min(count, bytes.size() - start);
    return {bytes.begin() + static_cast<std::ptrdiff_t>(start),
            bytes.begin() + static_cast<std::ptrdiff_t>(end)};
}

ByteVector inflated(const ByteVector& zlibStream, std::size_t contentLength) {
    // One extra byte of room reveals content that is longer than expected.
    ByteVector content(contentLength + 1);
    uLongf length = static_cast<uLongf>(content.size());
    const int result =
        uncompress(content.data(), &length, zlibStream.data(), static_cast<uLong>(zlibStream.size()));
    if (result != Z_OK || length != contentLength) {
        throw std::runtime_error("not a zlib stream of so many bytes");
    }
    content.pop_back();
    return content;
}

} // namespace Support
