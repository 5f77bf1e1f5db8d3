#include <Qel/Tnf/Index.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Log/Log.h>
#include <Qel/Tnf/BlockZlibCompressor.h>
#include <Qel/Tnf/Format.h>
#include <Qel/Tnf/Index.inl>
#include <Qel/Tnf/TemporaryBlock.h>
#include <Qel/Util/Platform.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace QelTnf {

template void Index::Put(const std::string&, const unsigned char&);
template void Index::Put(const std::string&, const bool&);
template void Index::Put(const std::string&, const int&);
template void Index::Put(const std::string&, const unsigned int&);
template void Index::Put(const std::string&, const std::uint64_t&);
template void Index::Put(const std::string&, const float&);
template void Index::Put(const std::string&, const std::string&);
template void Index::Put(const std::string&, const std::vector<unsigned char>&);
template void Index::Put(const std::string&, const std::vector<unsigned int>&);
template void Index::Put(const std::string&, const std::vector<float>&);
template void Index::Put(const std::string&, const std::vector<double>&);
template void Index::Put(const std::string&, const std::vector<std::string>&);

namespace {

bool beginsLike(const std::string& name, const std::string& reservedName) {
    return name.compare(0, Format::ReservedNameSize, reservedName) == 0;
}

bool IsEmptyBlockName(const std::string& name) {
    return beginsLike(name, Format::EmptyBlockName);
}

bool IsIndexBlockName(const std::string& name) {
    return beginsLike(name, Format::IndexBlockName);
}

// Makes room for `count` more elements, at no more than the cost of adding them one by one.
template <typename T>
void makeRoom(std::vector<T>& elements, std::uint64_t count) {
    const std::size_t needed = elements.size() + static_cast<std::size_t>(count);
    if (needed > elements.capacity()) {
        elements.reserve(std::max(needed, 2 * elements.capacity()));
    }
}

} // namespace

Index::~Index() {
    std::ranges::for_each(blocks_, &Block::Release);
}

// --- Choosing and adding blocks

std::uint64_t Index::ChooseBlock(const std::string& name) {
    const BlockSizeLimiter* const limiter = FindLimiter(name);
    return limiter != nullptr && TakesValues(*limiter) ? limiter->blockIds.back() : AddBlock(name);
}

// Null if there never was a block of this name.
BlockSizeLimiter* Index::FindLimiter(const std::string& name) {
    const auto found = limiters_.find(name);
    return found != limiters_.end() ? &found->second : nullptr;
}

std::uint64_t Index::AddBlock(const std::string& name) {
    if (IsEmptyBlockName(name)) {
        // Kept though nothing calls it; see docs/oddities.md.
        return AppendBlockInfo(name);
    }
    if (!limiters_.contains(Format::EmptyBlockName)) {
        indexSize_ = AddEmptyBlocks(Format::HeadRecords) + Format::LengthWordSize;
    }
    const std::vector<std::uint64_t>& freeIds = limiters_.at(Format::EmptyBlockName).blockIds;
    if (freeIds.empty()) {
        QEL_THROW(Qel::Exception::InvalidObjectState("This point should not be reached"));
    }
    std::string entryName = name;
    BlockSizeLimiter& limiter = LimiterWithRoom(name, 1);
    if (freeIds.size() == 1) {
        AddIndexBlock();
    }
    // Nothing fails from here on.
    const std::uint64_t id = TakeFreeId();
    AppendTo(limiter, id);
    InfoOf(id).name.swap(entryName);
    return id;
}

std::uint64_t Index::TakeFreeId() noexcept {
    std::vector<std::uint64_t>& freeIds = limiters_.find(Format::EmptyBlockName)->second.blockIds;
    const std::uint64_t id = freeIds.back();
    freeIds.pop_back();
    return id;
}

// Turns the last free id into an Index Block and adds the free ids that its table describes. The table is the
// block's content: it goes out once as it is here, and again at the close with the final records.
void Index::AddIndexBlock() {
    TemporaryBlock table;
    PutIndexTable(table.Get(), NewEntries(Format::EmptyBlockName, Format::IndexBlockRecords));
    std::string entryName = Format::IndexBlockName;
    constexpr auto tableSize = static_cast<std::uint32_t>(Format::indexTableSize(Format::IndexBlockRecords));
    BlockSizeLimiter& indexBlocks = LimiterWithRoom(Format::IndexBlockName, 1, tableSize);
    AddEmptyBlocks(Format::IndexBlockRecords);
    // Nothing fails from here on.
    const std::uint64_t id = TakeFreeId();
    AppendTo(indexBlocks, id);
    InfoOf(id).name.swap(entryName);
    AddFlags(indexBlocks, Format::BlockFreezable, false);
    BlockOf(id) = table.Take();
    // If the previous block has not been written yet, its length and place are not final. This place is then
    // wrong, and so are those of the blocks that go out after this one before the close.
    Place(id);
}

// The limiter of a name, made with `limit` if there is none, with room for `count` more ids.
template <typename... LimitT>
BlockSizeLimiter& Index::LimiterWithRoom(const std::string& name, std::uint64_t count, LimitT... limit) {
    if (const auto found = limiters_.find(name); found != limiters_.end()) {
        makeRoom(found->second.blockIds, count);
        return found->second;
    }
    BlockSizeLimiter limiter(limit...);
    makeRoom(limiter.blockIds, count);
    return limiters_.emplace(name, std::move(limiter)).first->second;
}

// The limiter must have room for the id.
void Index::AppendTo(BlockSizeLimiter& limiter, std::uint64_t id) noexcept {
    limiter.blockIds.push_back(id);
    if (limiter.blockIds.size() > 1) {
        limiter.closedBytes += StreamedSize(*(limiter.blockIds.end() - 2));
    }
}

std::uint64_t Index::AddEmptyBlocks(std::uint64_t count) {
    std::ranges::reverse(AppendEntries(Format::EmptyBlockName, count).blockIds);
    return Format::indexTableSize(count);
}

// Kept though nothing calls it; see docs/oddities.md.
std::uint64_t Index::AppendBlockInfo(const std::string& name) {
    return AppendEntries(name, 1).blockIds.back();
}

std::vector<BlockInfo> Index::NewEntries(const std::string& name, std::uint64_t count) const {
    std::vector<BlockInfo> entries;
    entries.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) {
        entries.push_back(BlockInfo{.number = static_cast<std::uint8_t>(nextNumber_ + i), .name = name});
    }
    return entries;
}

BlockSizeLimiter& Index::AppendEntries(const std::string& name, std::uint64_t count) {
    std::vector<BlockInfo> entries = NewEntries(name, count);
    makeRoom(blockInfos_, count);
    makeRoom(blocks_, count);
    BlockSizeLimiter& limiter = LimiterWithRoom(name, count);
    // Nothing fails from here on.
    for (BlockInfo& entry : entries) {
        const std::uint64_t id = blockInfos_.size();
        blockInfos_.push_back(std::move(entry));
        blocks_.emplace_back();
        AppendTo(limiter, id);
        ++nextNumber_;
    }
    return limiter;
}

// Kept though nothing calls it; see docs/oddities.md.
BlockSizeLimiter& Index::GetBlockSizeLimiter(const std::string& name) {
    const auto found = limiters_.find(name);
    if (found == limiters_.end()) {
        QEL_THROW(Qel::Exception::KeyNotFound());
    }
    return found->second;
}

// --- Values

void Index::Put(const std::string& name, const void* const& data, std::uint64_t size) {
    const std::uint64_t id = ChooseBlock(name);
    if (InfoOf(id).frozen) {
        QEL_THROW(Qel::Exception::KeyNotFound());
    }
    BlockOf(id).Put(data, static_cast<unsigned int>(size));
}

unsigned char* Index::Extend(const std::string& name, std::uint32_t count) {
    const std::uint64_t id = ChooseBlock(name);
    if (InfoOf(id).frozen) {
        QEL_THROW(Qel::Exception::KeyNotFound());
    }
    Block::TakeEnvironment();
    return BlockOf(id).Extend(count);
}

std::uint64_t Index::AddStoredBlock(const std::string& name, std::uint32_t length,
                                    std::uint32_t contentLength) {
    const std::uint64_t id = AddBlock(name);
    if (!HaveAllEarlierGoneOut(id)) {
        QEL_THROW(Qel::Exception::NotYetImplemented());
    }
    BlockInfo& info = InfoOf(id);
    info.flags |= Format::BlockCompressed;
    info.length = length;
    info.uncompressedLength = contentLength;
    info.frozen = true;
    PutPosition(id);
    return id;
}

void Index::SetBlockFlags(std::string name, unsigned char flags) {
    if (const auto found = limiters_.find(name); found != limiters_.end()) {
        AddFlags(found->second, flags, IsEmptyBlockName(name));
    }
}

void Index::AddFlags(BlockSizeLimiter& limiter, unsigned char flags, bool fromFirst) noexcept {
    for (std::size_t bit = 0; bit < limiter.flaggedBlocks.size(); ++bit) {
        const unsigned char flag = flags & (1U << bit);
        if (flag != 0) {
            FlagFrom(fromFirst ? 0 : limiter.flaggedBlocks[bit], limiter.blockIds, flag);
            limiter.flaggedBlocks[bit] = limiter.blockIds.size();
        }
    }
}

void Index::FlagFrom(std::size_t first, const std::vector<std::uint64_t>& ids, unsigned char flag) noexcept {
    for (std::size_t i = first; i < ids.size(); ++i) {
        InfoOf(ids[i]).flags |= flag;
    }
}

std::uint64_t Index::GetStreamSize(const std::string& name) {
    const BlockSizeLimiter* const limiter = FindLimiter(name);
    return limiter != nullptr ? StreamSize(*limiter) : 0;
}

std::uint64_t Index::StreamSize(const BlockSizeLimiter& limiter) const {
    return limiter.blockIds.empty() ? 0 : limiter.closedBytes + StreamedSize(limiter.blockIds.back());
}

// The number of bytes for which a block counts in its name's stream.
std::uint64_t Index::StreamedSize(std::uint64_t id) const {
    return InfoOf(id).frozen ? InfoOf(id).uncompressedLength : BlockOf(id).GetPosition();
}

void Index::FollowStreamedSize(std::uint64_t id, std::uint64_t formerSize) {
    BlockSizeLimiter& limiter = limiters_.at(InfoOf(id).name);
    if (limiter.blockIds.back() != id) {
        limiter.closedBytes += StreamedSize(id) - formerSize;
    }
}

// --- Writing

void Index::WriteBufferToFileStream(std::uint64_t id, std::FILE* const stream) {
    constexpr const char* sourceName = "QelTnf::Index::WriteBufferToFileStream";
    QEL_LOG(sourceName, "Writing buffer " << id << " to stream.");
    if (InfoOf(id).frozen) {
        QEL_THROW(Qel::Exception::InvalidObjectState());
    }
    const std::uint32_t contentLength = BlockOf(id).GetSize();
    if (contentLength != 0) {
        QEL_LOG(sourceName, "Buffer length: " << contentLength);
    }
    const std::uint64_t formerSize = StreamedSize(id);
    if ((InfoOf(id).flags & Format::BlockCompressed) != 0) {
        Compress(id);
        QEL_LOG(sourceName, "Buffer length after transformations: " << BlockOf(id).GetSize());
    }
    Place(id);
    Freeze(id, contentLength);
    FollowStreamedSize(id, formerSize);
    QEL_LOG(sourceName, "Writing buffer at position: " << InfoOf(id).position);
    if (!QelUtil::Platform::seekTo(stream, InfoOf(id).position)) {
        QEL_LOG(sourceName, "File positioning failed");
        QEL_THROW(Qel::Exception::FileWriteException("Saving the buffer failed"));
    }
    BlockOf(id).Write(stream, false);
    BlockOf(id).Release();
    QEL_LOG(sourceName, "Buffer " << id << " written to stream.");
}

void Index::Compress(std::uint64_t id) {
    const std::uint64_t formerSize = StreamedSize(id);
    BlockZlibCompressor compressor(Format::CompressionLevel);
    try {
        compressor(BlockOf(id));
    } catch (...) {
        // The content is lost then, and no longer counts.
        FollowStreamedSize(id, formerSize);
        throw;
    }
}

// Places a block right after the previous one, going by what that one's entry says now.
void Index::Place(std::uint64_t id) {
    InfoOf(id).length = BlockOf(id).GetSize();
    PutPosition(id);
}

void Index::PutPosition(std::uint64_t id) {
    InfoOf(id).position =
        id == 0 ? indexSize_ + indexPosition_ : InfoOf(id - 1).position + InfoOf(id - 1).length;
}

void Index::Freeze(std::uint64_t id, std::uint32_t contentLength) {
    if ((InfoOf(id).flags & Format::BlockFreezable) != 0) {
        InfoOf(id).frozen = true;
        InfoOf(id).uncompressedLength = contentLength;
    }
}

void Index::WriteIndexBufferToFileStream(std::uint64_t id, std::FILE* const stream) {
    constexpr const char* sourceName = "QelTnf::Index::WriteIndexBufferToFileStream";
    QEL_LOG(sourceName, "Writing index buffer " << id << " to stream.");
    BlockInfo& info = InfoOf(id);
    Block& block = BlockOf(id);
    const std::uint64_t formerSize = StreamedSize(id);
    const bool isFreezable = (info.flags & Format::BlockFreezable) != 0;
    if (info.frozen) {
        info.frozen = !isFreezable;
        if (!info.released) {
            block.Release();
            block.Reset();
            info.released = true;
        }
    }
    block.SetPosition(0);
    PutIndexTable(block, EntriesFrom(id + 1, Format::IndexBlockRecords));
    Place(id);
    info.frozen = info.frozen || isFreezable;
    FollowStreamedSize(id, formerSize);
    // A failed positioning is ignored for index tables: they then land wherever the stream is.
    (void)QelUtil::Platform::seekTo(stream, info.position);
    block.Write(stream, false);
    QEL_LOG(sourceName, "Index buffer " << id << " written to stream.");
}

void Index::WriteAllBuffersToFileStream(std::FILE* const stream) {
    constexpr const char* sourceName = "QelTnf::Index::WriteAllBuffersToFileStream";
    QEL_LOG(sourceName, "Writing all buffers to file stream ...");
    std::uint64_t id = 0;
    while (id < blockInfos_.size() && HasGoneOut(id)) {
        ++id;
    }
    for (; id < blockInfos_.size(); ++id) {
        WriteBufferToFileStream(id, stream);
    }
    WriteHeadIndex(stream);
    if (const auto indexBlocks = limiters_.find(Format::IndexBlockName); indexBlocks != limiters_.end()) {
        for (const std::uint64_t indexBlock : indexBlocks->second.blockIds) {
            WriteIndexBufferToFileStream(indexBlock, stream);
        }
    }
    QEL_LOG(sourceName, "All buffers to file stream written.");
}

void Index::FlushFrozen(std::FILE* const stream) {
    constexpr const char* sourceName = "QelTnf::Index::FlushFrozen";
    QEL_LOG(sourceName, "Flushing frozen blocks ... ");
    for (auto& [name, limiter] : limiters_) {
        if (IsEmptyBlockName(name) || IsIndexBlockName(name)) {
            continue;
        }
        const std::vector<std::uint64_t>& ids = limiter.blockIds;
        while (limiter.frozenBlocks < ids.size() && InfoOf(ids[limiter.frozenBlocks]).frozen) {
            ++limiter.frozenBlocks;
        }
        for (std::size_t i = limiter.frozenBlocks; i < ids.size(); ++i) {
            if (IsToBeFlushed(ids[i], limiter.limit)) {
                if (!HaveAllEarlierGoneOut(ids[i])) {
                    QEL_THROW(Qel::Exception::NotYetImplemented());
                }
                WriteBufferToFileStream(ids[i], stream);
            }
        }
    }
    QEL_LOG(sourceName, "Frozen blocks flushed. ");
}

bool Index::IsToBeFlushed(std::uint64_t id, std::uint32_t limit) const {
    const BlockInfo& info = InfoOf(id);
    return !info.frozen && (info.flags & Format::BlockFreezable) != 0 && BlockOf(id).GetSize() >= limit;
}

bool Index::HasGoneOut(std::uint64_t id) const {
    return InfoOf(id).frozen || IsIndexBlockName(InfoOf(id).name);
}

bool Index::HaveAllEarlierGoneOut(std::uint64_t id) {
    while (firstInMemory_ < id && HasGoneOut(firstInMemory_)) {
        ++firstInMemory_;
    }
    return firstInMemory_ >= id;
}

// --- Index tables

std::span<const BlockInfo> Index::EntriesFrom(std::uint64_t first, std::uint32_t count) const {
    return std::span(blockInfos_).subspan(static_cast<std::size_t>(first), count);
}

void Index::PutIndexTable(Block& block, std::span<const BlockInfo> entries) {
    block.Put(static_cast<std::uint32_t>(entries.size()));
    for (const BlockInfo& entry : entries) {
        std::array<char, Format::NameSize> name{};
        std::string_view(entry.name.c_str()).copy(name.data(), name.size());
        block.Append(entry.number);
        block.Append(Format::NameSize);
        block.Append(name.data(), Format::NameSize);
        block.Append(entry.length);
        block.Append(entry.flags);
        block.Append(entry.reserved);
    }
}

void Index::WriteHeadIndex(std::FILE* const stream) const {
    TemporaryBlock table;
    PutIndexTable(table.Get(), EntriesFrom(0, Format::HeadRecords));
    (void)QelUtil::Platform::seekTo(stream, indexPosition_);
    table.Get().Write(stream, true);
}

} // namespace QelTnf
