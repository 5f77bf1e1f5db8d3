#pragma once

#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

using ByteVector = std::vector<std::uint8_t>;

/// Little-endian bytes, written down value by value.
class Bytes {
public:
    Bytes() = default;
    Bytes(std::initializer_list<std::uint8_t> bytes) : content_(bytes) {}

    Bytes& u8(std::uint8_t value) { return number(value, 1); }
    Bytes& u32(std::uint32_t value) { return number(value, 4); }
    Bytes& u64(std::uint64_t value) { return number(value, 8); }
    Bytes& u32s(std::initializer_list<std::uint32_t> values);
    /// A float by its bit pattern, or several floats.
    Bytes& bits(std::initializer_list<std::uint32_t> patterns) { return u32s(patterns); }
    /// Bytes without a length.
    Bytes& raw(std::string_view bytes);
    Bytes& append(const ByteVector& bytes);
    /// A text preceded by its length.
    Bytes& text(std::string_view value);
    /// Texts preceded by their count.
    Bytes& texts(std::initializer_list<std::string_view> values);
    /// The same byte, `count` times.
    Bytes& fill(std::size_t count, std::uint8_t value);
    Bytes& zeros(std::size_t count) { return fill(count, 0); }

    operator const ByteVector&() const { return content_; }
    friend bool operator==(const ByteVector& others, const Bytes& bytes) { return bytes.content_ == others; }
    friend bool operator==(const Bytes& bytes, const ByteVector& others) { return bytes.content_ == others; }
    friend void PrintTo(const Bytes& bytes, std::ostream* stream);

private:
    Bytes& number(std::uint64_t value, int size);

    ByteVector content_;
};

/// A file's bytes as they are on disk; none if there is no such file.
ByteVector bytesOf(const std::string& path);

/// `count` bytes from `offset` on, or fewer at the end.
ByteVector slice(const ByteVector& bytes, std::size_t offset, std::size_t count);

/// The content of one zlib stream.
/// @throws std::runtime_error if it is not a whole stream of `contentLength` bytes.
ByteVector inflated(const ByteVector& zlibStream, std::size_t contentLength);

} // namespace Support
