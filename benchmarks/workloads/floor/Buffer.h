#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace Workloads::Floor {

/// Bytes that are appended. Memory that has not been filled is only addresses.
class Buffer {
public:
    Buffer() = default;
    Buffer(Buffer&& other) noexcept
        : bytes_(std::exchange(other.bytes_, nullptr)),
          size_(std::exchange(other.size_, 0)),
          room_(std::exchange(other.room_, 0)) {}
    Buffer& operator=(Buffer&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        std::swap(size_, other.size_);
        std::swap(room_, other.room_);
        return *this;
    }
    ~Buffer() { std::free(bytes_); }

    unsigned char* data() { return bytes_; }
    std::size_t size() const { return size_; }

    /// Adds `count` bytes, which the caller fills.
    unsigned char* extend(std::size_t count) {
        if (size_ + count > room_) {
            growTo(2 * (size_ + count));
        }
        unsigned char* const place = bytes_ + size_;
        size_ += count;
        return place;
    }

    void append(const void* source, std::size_t count) { std::memcpy(extend(count), source, count); }

    template <typename T>
    void put(const T& value) {
        append(&value, sizeof(value));
    }

    void putText(const std::string& text) {
        unsigned char* const place = extend(sizeof(std::uint32_t) + text.size());
        const auto length = static_cast<std::uint32_t>(text.size());
        std::memcpy(place, &length, sizeof(length));
        std::memcpy(place + sizeof(length), text.data(), text.size());
    }

    void growTo(std::size_t room) {
        void* const grown = std::realloc(bytes_, room);
        if (grown == nullptr) {
            throw std::bad_alloc();
        }
        bytes_ = static_cast<unsigned char*>(grown);
        room_ = room;
    }

private:
    unsigned char* bytes_ = nullptr;
    std::size_t size_ = 0;
    std::size_t room_ = 0;
};

} // namespace Workloads::Floor
