#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

/// Writes values as they are stored in a file, one after another. Numbers are little-endian.
class Bytes {
public:
    Bytes& u8(unsigned value);
    Bytes& u32(std::uint32_t value);
    Bytes& u64(std::uint64_t value);
    Bytes& f32(float value);
    Bytes& f64(double value);
    Bytes& f32s(std::initializer_list<float> values);
    /// Just the characters.
    Bytes& raw(std::string_view text);
    Bytes& raw(std::initializer_list<unsigned> bytes);
    Bytes& raw(const std::vector<std::uint8_t>& bytes);
    Bytes& fill(std::size_t count, unsigned value);
    /// A 32-bit length and the characters.
    Bytes& text(std::string_view text);
    /// A 32-bit count and the elements.
    Bytes& texts(std::initializer_list<std::string_view> list);
    Bytes& u8List(std::initializer_list<unsigned> list);
    Bytes& u32List(std::initializer_list<std::uint32_t> list);
    Bytes& f32List(std::initializer_list<float> list);
    Bytes& f64List(std::initializer_list<double> list);
    /// A record without attributes: six empty lists.
    Bytes& noAttributes();

    std::size_t size() const { return bytes_.size(); }
    operator const std::vector<std::uint8_t>&() const {
        return bytes_;
    } // NOLINT: usable as its bytes everywhere

    friend bool operator==(const Bytes& left, const std::vector<std::uint8_t>& right) {
        return left.bytes_ == right;
    }

private:
    std::vector<std::uint8_t> bytes_;
};

/// The first bytes.
std::vector<std::uint8_t> cut(std::vector<std::uint8_t> bytes, std::size_t length);

/// The bytes with those at offset replaced.
std::vector<std::uint8_t> patched(std::vector<std::uint8_t> bytes, std::size_t offset,
                                  const std::vector<std::uint8_t>& replacement);
