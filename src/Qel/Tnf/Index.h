#pragma once

#include <Qel/Tnf/Block.h>
#include <Qel/Tnf/BlockInfo.h>
#include <Qel/Tnf/BlockSizeLimiter.h>
#include <Qel/Tnf/Format.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace QelTnf {

/// The catalogue of a file's blocks: makes blocks by name, decides which block a value goes into, places
/// every block in the file and writes the index tables.
///
/// All blocks of one name, oldest first, form that name's stream. A value is never divided between two
/// blocks; a block that has reached its name's limit is followed by a new one.
///
/// Entries are accessed by id, because adding entries invalidates references to them.
///
/// A block is added completely or, if memory runs out, not at all.
class Index {
public:
    Index() = default;
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;
    /// Frees the content of all blocks.
    ~Index();

    /// Makes a block of this name. The first call also makes the entries of the head index; when only one
    /// empty entry is left, an Index Block takes it and brings 200 more.
    /// @return the block's id.
    std::uint64_t AddBlock(const std::string& name);

    /// @throws Qel::Exception::KeyNotFound if there never was a block of this name.
    BlockSizeLimiter& GetBlockSizeLimiter(const std::string& name);

    /// The bytes of a name's stream before compression; 0 for an unknown name.
    std::uint64_t GetStreamSize(const std::string& name);

    /// Appends raw bytes to a name's stream. The size is cut to 32 bits.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory; nothing goes in.
    void Put(const std::string& name, const void* const& data, std::uint64_t size);

    /// Appends `count` bytes, which hold anything until the caller fills them, to a name's stream.
    /// @return where they begin, good until the index is used again.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory; nothing goes in.
    unsigned char* Extend(const std::string& name, std::uint32_t count);

    /// Appends one value to a name's stream: numbers as they lie in memory, texts and lists preceded by their
    /// length or count in 32 bits.
    /// @tparam T `unsigned char`, `bool`, `int`, `unsigned int`, `std::uint64_t`, `float`, `std::string`, a
    ///           `std::vector` of `unsigned char`, `unsigned int`, `float`, `double` or `std::string`, or one
    ///           of the model's records.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory; what went in stays.
    template <typename T>
    void Put(const std::string& name, const T& value);

    /// Adds a compressed block whose bytes, as they are stored, the caller has and writes at the block's place. The
    /// block counts as written from now on, and the next value of its name opens another one.
    /// @param length        The bytes in the file: the content's length in 32 bits, and the zlib stream.
    /// @param contentLength The bytes before compression.
    /// @return the block's id; its place is in its entry.
    /// @throws Qel::Exception::NotYetImplemented if a block before it is still in memory, so that its place is not
    ///         known; an empty block of this name is then there.
    std::uint64_t AddStoredBlock(const std::string& name, std::uint32_t length, std::uint32_t contentLength);

    /// Adds `flags` to all existing blocks of this name; later ones don't get them.
    void SetBlockFlags(std::string name, unsigned char flags);

    /// Writes out every full block that is freezable and frees its memory. The cost grows with the number of
    /// such blocks alone.
    /// @throws Qel::Exception::NotYetImplemented if a block before one of these is still in memory: a block's
    ///         place depends on the lengths of all blocks before it.
    /// @throws Qel::Exception::FileWriteException "Saving the buffer failed" if the stream can't be
    ///         positioned.
    void FlushFrozen(std::FILE* stream);

    /// Compresses a block if its flags say so, writes it at its place and frees its memory. A freezable block
    /// is frozen from then on.
    /// @throws Qel::Exception::InvalidObjectState for a frozen block.
    /// @throws Qel::Exception::FileWriteException "Saving the buffer failed" if the stream can't be
    ///         positioned.
    void WriteBufferToFileStream(std::uint64_t id, std::FILE* stream);

    /// Writes an Index Block with the present state of the 200 entries after its own.
    void WriteIndexBufferToFileStream(std::uint64_t id, std::FILE* stream);

    /// Writes all blocks that have not gone out yet, then all index tables.
    /// @pre There is a block.
    void WriteAllBuffersToFileStream(std::FILE* stream);

    const std::vector<BlockInfo>& GetBlockInfos() const { return blockInfos_; }
    const std::vector<Block>& GetBlocks() const { return blocks_; }
    std::uint64_t GetIndexSize() const { return indexSize_; }

private:
    friend class BlockStream;
    // Lets tests bring about the states that only a fault of this class could lead to.
    friend struct IndexPeer;

    // An id is the place in both lists.
    BlockInfo& InfoOf(std::uint64_t id) noexcept { return blockInfos_[static_cast<std::size_t>(id)]; }
    const BlockInfo& InfoOf(std::uint64_t id) const noexcept {
        return blockInfos_[static_cast<std::size_t>(id)];
    }
    Block& BlockOf(std::uint64_t id) noexcept { return blocks_[static_cast<std::size_t>(id)]; }
    const Block& BlockOf(std::uint64_t id) const noexcept { return blocks_[static_cast<std::size_t>(id)]; }

    BlockSizeLimiter* FindLimiter(const std::string& name);
    // Whether the next value of a name goes into its last block.
    bool TakesValues(const BlockSizeLimiter& limiter) const {
        if (limiter.blockIds.empty()) {
            return false;
        }
        const std::uint64_t last = limiter.blockIds.back();
        return !InfoOf(last).frozen && BlockOf(last).GetSize() < limiter.limit;
    }
    std::uint64_t ChooseBlock(const std::string& name);
    std::uint64_t TakeFreeId() noexcept;
    void AddIndexBlock();
    template <typename... LimitT>
    BlockSizeLimiter& LimiterWithRoom(const std::string& name, std::uint64_t count, LimitT... limit);
    void AppendTo(BlockSizeLimiter& limiter, std::uint64_t id) noexcept;
    std::uint64_t AddEmptyBlocks(std::uint64_t count);
    std::uint64_t AppendBlockInfo(const std::string& name);
    std::vector<BlockInfo> NewEntries(const std::string& name, std::uint64_t count) const;
    BlockSizeLimiter& AppendEntries(const std::string& name, std::uint64_t count);

    static void PutIndexTable(Block& block, std::span<const BlockInfo> entries);
    std::span<const BlockInfo> EntriesFrom(std::uint64_t first, std::uint32_t count) const;
    void WriteHeadIndex(std::FILE* stream) const;

    void AddFlags(BlockSizeLimiter& limiter, unsigned char flags, bool fromFirst) noexcept;
    void FlagFrom(std::size_t first, const std::vector<std::uint64_t>& ids, unsigned char flag) noexcept;
    void Compress(std::uint64_t id);
    void Place(std::uint64_t id);
    void PutPosition(std::uint64_t id);
    void Freeze(std::uint64_t id, std::uint32_t contentLength);
    std::uint64_t StreamSize(const BlockSizeLimiter& limiter) const;
    std::uint64_t StreamedSize(std::uint64_t id) const;
    void FollowStreamedSize(std::uint64_t id, std::uint64_t formerSize);

    bool HasGoneOut(std::uint64_t id) const;
    bool HaveAllEarlierGoneOut(std::uint64_t id);
    bool IsToBeFlushed(std::uint64_t id, std::uint32_t limit) const;

    std::vector<BlockInfo> blockInfos_;
    std::vector<Block> blocks_;
    std::map<std::string, BlockSizeLimiter> limiters_;
    std::uint8_t nextNumber_ = 1;
    std::uint64_t indexPosition_ = Format::HeadIndexPosition;
    std::uint64_t indexSize_ = 0;
    // All blocks before this one are known to have gone out.
    std::uint64_t firstInMemory_ = 0;
};

} // namespace QelTnf
