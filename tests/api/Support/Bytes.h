#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace Api {

/// Little-endian bytes, written down value by value.
class Bytes {
public:
    Bytes& u8(std::uint8_t value) { return number(value, 1); }
    Bytes& u32(std::uint32_t value) { return number(value, 4); }
    Bytes& u64(std::uint64_t value) { return number(value, 8); }
    Bytes& u32s(std::initializer_list<std::uint32_t> values) {
        for (const std::uint32_t value : values) {
            u32(value);
        }
        return *this;
    }
    /// A text behind its length.
    Bytes& text(std::string_view value) {
        u32(static_cast<std::uint32_t>(value.size()));
        content.insert(content.end(), value.begin(), value.end());
        return *this;
    }
    /// Texts behind their count.
    Bytes& texts(std::initializer_list<std::string_view> values) {
        u32(static_cast<std::uint32_t>(values.size()));
        for (const std::string_view value : values) {
            text(value);
        }
        return *this;
    }
    Bytes& append(const std::vector<std::uint8_t>& bytes) {
        content.insert(content.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// As many zero bytes.
    Bytes& zeros(std::size_t count) {
        content.insert(content.end(), count, 0);
        return *this;
    }

    operator const std::vector<std::uint8_t>&() const { return content; }

    friend bool operator==(const std::vector<std::uint8_t>& left, const Bytes& right) {
        return left == right.content;
    }

private:
    Bytes& number(std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) {
            content.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
        return *this;
    }

    std::vector<std::uint8_t> content;
};

} // namespace Api
