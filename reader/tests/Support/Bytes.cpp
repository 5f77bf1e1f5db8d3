#include "Support/Bytes.h"

#include <algorithm>
#include <bit>

Bytes& Bytes::u8(unsigned value) {
    bytes_.push_back(static_cast<std::uint8_t>(value));
    return *this;
}

Bytes& Bytes::u32(std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        u8((value >> shift) & 0xFFu);
    }
    return *this;
}

Bytes& Bytes::u64(std::uint64_t value) {
    u32(static_cast<std::uint32_t>(value & 0xFFFFFFFFu));
    return u32(static_cast<std::uint32_t>(value >> 32));
}

Bytes& Bytes::f32(float value) {
    return u32(std::bit_cast<std::uint32_t>(value));
}

Bytes& Bytes::f64(double value) {
    return u64(std::bit_cast<std::uint64_t>(value));
}

Bytes& Bytes::f32s(std::initializer_list<float> values) {
    for (const auto value : values) {
        f32(value);
    }
    return *this;
}

Bytes& Bytes::raw(std::string_view text) {
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    return *this;
}

Bytes& Bytes::raw(std::initializer_list<unsigned> bytes) {
    for (const auto byte : bytes) {
        u8(byte);
    }
    return *this;
}

Bytes& Bytes::raw(const std::vector<std::uint8_t>& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
}

Bytes& Bytes::fill(std::size_t count, unsigned value) {
    bytes_.insert(bytes_.end(), count, static_cast<std::uint8_t>(value));
    return *this;
}

Bytes& Bytes::text(std::string_view text) {
    return u32(static_cast<std::uint32_t>(text.size())).raw(text);
}

Bytes& Bytes::texts(std::initializer_list<std::string_view> list) {
    u32(static_cast<std::uint32_t>(list.size()));
    for (const auto item : list) {
        text(item);
    }
    return *this;
}

Bytes& Bytes::u8List(std::initializer_list<unsigned> list) {
    return u32(static_cast<std::uint32_t>(list.size())).raw(list);
}

Bytes& Bytes::u32List(std::initializer_list<std::uint32_t> list) {
    u32(static_cast<std::uint32_t>(list.size()));
    for (const auto item : list) {
        u32(item);
    }
    return *this;
}

Bytes& Bytes::f32List(std::initializer_list<float> list) {
    return u32(static_cast<std::uint32_t>(list.size())).f32s(list);
}

Bytes& Bytes::f64List(std::initializer_list<double> list) {
    u32(static_cast<std::uint32_t>(list.size()));
    for (const auto item : list) {
        f64(item);
    }
    return *this;
}

Bytes& Bytes::noAttributes() {
    return fill(24, 0);
}

std::vector<std::uint8_t> cut(std::vector<std::uint8_t> bytes, std::size_t length) {
    bytes.resize(length);
    return bytes;
}

std::vector<std::uint8_t> patched(std::vector<std::uint8_t> bytes, std::size_t offset,
                                  const std::vector<std::uint8_t>& replacement) {
    std::ranges::copy(replacement, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return bytes;
}
