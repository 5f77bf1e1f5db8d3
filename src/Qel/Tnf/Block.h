#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

namespace QelMox {
class Material;
struct ModifierInfo;
struct ResultAttributes;
} // namespace QelMox

namespace QelTnf {

/// The least number of bytes by which a block's buffer grows, for the whole process. Each Block::Put() stores
/// the value of the environment variable here, and it stays when the variable is removed.
extern std::uint32_t defaultBlockSize;

/// A growable buffer: the content of one block of the file while it is in memory.
///
/// Values go in at a write position, as they lie in memory. A plain value that copies bitwise: copies share
/// the buffer, and whoever holds the block frees it with release().
///
/// Every Put() can throw Qel::Exception::MemoryAllocationException, after putting in everything before the
/// element that didn't fit. Growth beyond 4 GiB is not reported: the position wraps.
class Block {
public:
    /// Copies `count` bytes in at the write position and moves it past them.
    void Put(const void* const& source, const unsigned int& count);

    /// A text: its length in 32 bits, then its bytes.
    void Put(const std::string& text);

    /// A number, as it lies in memory.
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void Put(const T& number) {
        TakeEnvironment();
        Append(number);
    }

    /// A count in 32 bits, then each number or text.
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_same_v<T, std::string>
    void Put(const std::vector<T>& elements) {
        TakeEnvironment();
        Append(static_cast<std::uint32_t>(elements.size()));
        for (const T& element : elements) {
            Append(element);
        }
    }

    // Records of the model, implemented in Mox/Records.
    void Put(const QelMox::Material& material);
    void Put(const QelMox::ModifierInfo& info);
    void Put(const std::vector<QelMox::ModifierInfo>& infos);
    void Put(const std::vector<QelMox::ResultAttributes>& attributes);

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

    /// Turns a released block into an empty one.
    void Reset() { *this = Block(); }

private:
    static void TakeEnvironment();
    void Append(const void* source, std::uint32_t count);
    void Append(const std::string& text);
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void Append(const T& number) { Append(&number, sizeof(number)); }
    void GrowFor(std::uint32_t count);
    void RestoreReleasedBuffer();

    unsigned char* data_ = nullptr;
    std::uint64_t capacity_ = 0;
    std::uint32_t size_ = 0;
    std::uint32_t position_ = 0;
};

static_assert(std::is_trivially_copyable_v<Block>);

} // namespace QelTnf
