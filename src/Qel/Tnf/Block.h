#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace QelMox {
class Material;
struct ModifierInfo;
struct ResultAttributes;
} // namespace QelMox

namespace QelTnf {

/// The least number of bytes by which a block's buffer grows, for the whole process.
/// Block::TakeEnvironment() stores the value of the environment variable here, and it stays when the variable
/// is removed.
extern std::uint32_t defaultBlockSize;

/// A growable buffer: the content of one block of the file while it is in memory.
///
/// Values go in at a write position, as they lie in memory. A plain value that copies bitwise: copies share
/// the buffer, and whoever holds the block frees it with release().
///
/// Put() looks the environment variable up and then does what the Append() of the same value does. Every one
/// of them can throw Qel::Exception::MemoryAllocationException, after putting in everything before the element
/// that didn't fit. Growth beyond 4 GiB is not reported: the position wraps.
class Block {
public:
    /// Makes the value of the environment variable, if it is set, the growth step of all blocks.
    static void TakeEnvironment();

    void Put(const void* const& source, const unsigned int& count);
    template <typename T>
    void Put(const T& value) {
        TakeEnvironment();
        Append(value);
    }

    /// Copies `count` bytes in at the write position and moves it past them.
    void Append(const void* source, std::uint32_t count) {
        unsigned char* const place = Extend(count);
        if (count != 0) {
            std::memcpy(place, source, count);
        }
    }

    /// A number, as it lies in memory.
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void Append(const T& number) { Append(&number, sizeof(number)); }

    /// A text: its length in 32 bits, then its bytes.
    void Append(std::string_view text);

    /// A count in 32 bits, then each number or text.
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_same_v<T, std::string>
    void Append(const std::vector<T>& elements) {
        Append(static_cast<std::uint32_t>(elements.size()));
        for (const T& element : elements) {
            Append(element);
        }
    }

    // Records of the model, implemented in Mox/Records.
    void Append(const QelMox::Material& material);
    void Append(const QelMox::ModifierInfo& info);
    void Append(const std::vector<QelMox::ModifierInfo>& infos);
    void Append(const std::vector<QelMox::ResultAttributes>& attributes);

    /// Moves the write position past `count` bytes, which hold anything until the caller fills them.
    /// @return where they begin, good until the block is used again.
    unsigned char* Extend(std::uint32_t count) {
        if (!HasRoomFor(count)) {
            MakeRoomFor(count);
        }
        unsigned char* const place = data_ + position_;
        position_ += count;
        size_ = std::max(size_, position_);
        return place;
    }

    /// Enlarges the buffer by exactly `additional` bytes.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory; the block stays as it was.
    void AllocateAdditionalMemory(const std::uint64_t& additional);

    /// @throws Qel::Exception::OutOfBounds "Invalid block position" for a position beyond the size.
    void SetPosition(const unsigned int& newPosition);

    /// Writes the content at the stream's present offset, preceded by its length in 32 bits if `withLength`
    /// is set. The results of the writes are not examined.
    /// @throws Qel::Exception::FileWriteException "Unable to write to file" if the stream's end-of-file
    ///         indicator is set, which no stream that is written to has.
    void Write(std::FILE* stream, bool withLength) const;

    /// Frees the buffer. The other fields stay, and describe the buffer that is gone.
    void Release();

    std::uint32_t GetSize() const { return size_; }
    std::uint32_t GetPosition() const { return position_; }
    std::uint64_t GetCapacity() const { return capacity_; }
    const unsigned char* GetData() const { return data_; }

    /// Hands the buffer, which is to be freed with `free`, to the caller, and leaves an empty block.
    unsigned char* Detach();

    /// Takes over a buffer from `malloc`, of which the first `size` bytes are the content, in place of what the
    /// block has, which is not freed. The write position is the end.
    void Attach(unsigned char* buffer, std::uint64_t capacity, std::uint32_t size);

    /// Turns a released block into an empty one.
    void Reset() { *this = Block(); }

private:
    // The sum is formed in 64 bits: near 4 GiB the position wraps, but the bytes up to the wrap need room all
    // the same.
    bool HasRoomFor(std::uint32_t count) const {
        return data_ != nullptr && std::uint64_t{position_} + count < capacity_;
    }
    void MakeRoomFor(std::uint32_t count);
    void RestoreReleasedBuffer();

    unsigned char* data_ = nullptr;
    std::uint64_t capacity_ = 0;
    std::uint32_t size_ = 0;
    std::uint32_t position_ = 0;
};

static_assert(std::is_trivially_copyable_v<Block>);

} // namespace QelTnf
