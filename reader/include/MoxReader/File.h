#pragma once

#include "MoxReader/BlockContent.h"
#include "MoxReader/RawIndex.h"
#include "MoxReader/StreamReader.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string_view>

namespace MoxReader {

/// An open file: its index, its blocks and its streams. Start here.
///
/// A file is never read as a whole: opening reads the index, and everything else only what is asked for. One
/// thread at a time may use a file and all readers that come from it.
class File {
public:
    /// Opens a file on disk.
    /// @throws Error  OpenFailed, ReadFailed, or the first damage of the index: Truncated, BadSignature,
    ///                UnsupportedFileVersion, NotFinished, BadIndexTable, BadIndexRecord.
    explicit File(const std::filesystem::path& path);
    /// Opens any source of bytes. @throws Error  As above, except OpenFailed.
    explicit File(std::shared_ptr<Source> source);
    /// Uses an index as it is, even a damaged or made-up one, without checking it: for tools that work on
    /// damaged files.
    File(std::shared_ptr<Source> source, RawIndex index);

    /// The bytes that this file was opened from.
    Source& source() const { return *source_; }
    /// The same, for readers that outlive this object.
    std::shared_ptr<Source> shareSource() const { return source_; }
    /// The number of bytes of the file.
    std::uint64_t size() const { return source_->size(); }
    /// The version of the container: "1.3".
    const std::string& version() const { return index_.version; }
    /// The index as it is stored.
    const RawIndex& index() const { return index_; }
    /// All records in id order, Index Blocks and empty entries included.
    const std::vector<BlockRecord>& blocks() const { return index_.blocks; }

    /// The stream names in the order of their first blocks; Index Blocks and empty entries do not count.
    const std::vector<std::string>& streamNames() const { return names_; }
    /// Whether there is a block of that name.
    bool hasStream(std::string_view name) const { return streams_.contains(name); }
    /// A new cursor at position 0. A name without blocks gives a stream of size 0.
    StreamReader stream(std::string_view name) const;

    /// The content of one block. @throws Error  NoSuchBlock, or the codes of readBlockContent().
    std::vector<std::uint8_t> readBlock(std::uint64_t id) const;

private:
    void collectStreams();

    std::shared_ptr<Source> source_;
    RawIndex index_;
    std::vector<std::string> names_;
    std::map<std::string, std::vector<std::uint64_t>, std::less<>> streams_; ///< Places in blocks().
};

} // namespace MoxReader
