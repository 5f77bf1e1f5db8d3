#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace MoxReader {

/// What is wrong. errorName() and errorText() put it into words.
enum class ErrorCode {
    // The source of bytes
    OpenFailed, ///< There is no regular file at that path, or it cannot be opened.
    ReadFailed, ///< The system reported a failure while reading.
    // The front of the file and the index
    Truncated,              ///< The file ends inside its header or inside an index table.
    BadSignature,           ///< The first eight bytes are not those of this format.
    UnsupportedFileVersion, ///< The file's version is not one that this library reads.
    NotFinished,            ///< The file was never closed by its writer: its head index is absent.
    BadIndexTable,          ///< A table's length or count is wrong, or an Index Block is where none can be.
    BadIndexRecord,         ///< A record's name length is wrong.
    // Single blocks
    NoSuchBlock,     ///< The caller asked for an id that the index does not have.
    BlockBeyondFile, ///< The block's bytes reach past the end of the file.
    ContentLost,     ///< The block is marked compressed and has no bytes: its writer failed to compress it.
    ContentLengthMissing,     ///< The block is marked compressed and is too short for its content length.
    ContentLengthImplausible, ///< No zlib stream of this size can yield that content length.
    ZlibDamaged,              ///< The compressed bytes are not a zlib stream.
    ZlibIncomplete,           ///< The block ends before its zlib stream does.
    ContentTooShort,          ///< The zlib stream yields fewer bytes than stated.
    ContentTooLong,           ///< The zlib stream yields more bytes than stated.
    ChecksumMismatch,         ///< The content's checksum is not the one that the zlib stream ends with.
    TrailingBytes,            ///< The block continues after its zlib stream.
    BlockOverwritten,         ///< The writer overwrote a part of the block.
    // Streams and records
    MissingStream,            ///< The file has no block of a name that every file has.
    EndOfStream,              ///< A value reaches past the end of its stream.
    BadCount,                 ///< A count is more than its stream can hold, or a tree has no node.
    BadValue,                 ///< A truth value is neither 0 nor 1.
    BadRecordSize,            ///< A record's size word does not fit its fields or its stream.
    UnsupportedRecordVersion, ///< A node's version has a layout that this library does not know.
    UnknownNodeType,          ///< A node's type name is not known, so what follows cannot be read.
    BadPosition,              ///< A node's position is not where the descriptors before it end.
    TrailingStreamBytes,      ///< A stream continues after its last record.
    BadAttributes,            ///< The six lists of an attribute record contradict each other.
    BadNodeSets,              ///< The payload of a NodeSets node contradicts itself or its descriptor.
    // The model
    NoSuchNode,       ///< The caller asked for a node or a dataset that the model does not have.
    BadNodeId,        ///< Node ids are not 1, 2, 3 and so on.
    BadTreeLink,      ///< A node's parent, sibling or child ids contradict the tree.
    BadLinkTarget,    ///< A linked dataset names a dataset that does not exist.
    LinkCycle,        ///< Linked datasets lead back to themselves; no entry of the cycle holds numbers.
    WrongElementType, ///< The dataset's numbers are not of the requested type.
    BadDatasetSize,   ///< The dataset's size in bytes is not a whole number of items.
};

/// The name of the enumerator, for example "BadSignature".
std::string_view errorName(ErrorCode code);
/// A sentence for the user, without a full stop, for example "the first eight bytes are not the signature".
std::string_view errorText(ErrorCode code);

/// Where it is wrong, as far as that is known.
struct Place {
    std::string path{};                          ///< In UTF-8; set only when opening a file.
    std::optional<std::uint64_t> fileOffset{};   ///< Bytes from the start of the file.
    std::optional<std::uint64_t> blockId{};      ///< Counted from 0 along the chain of index tables.
    std::string name{};                          ///< The name of the block or stream.
    std::optional<std::uint64_t> streamOffset{}; ///< Bytes into the decompressed stream of that name.
    std::string record{};                        ///< For the user, for example "dataset 3 of node 5".
};

/// The one exception class of this library. Copying never throws.
class Error : public std::runtime_error {
public:
    /// An error with its text, which names the place as far as that is known.
    explicit Error(ErrorCode code, Place place = {});

    /// What is wrong.
    ErrorCode code() const { return code_; }
    /// Where it is wrong. Valid as long as this error or a copy of it.
    const Place& place() const { return *place_; }

    /// The same error in a record, or in a record of a record: "dataset 3" becomes "dataset 3 of node 5".
    Error inRecord(const std::string& record) const;

private:
    ErrorCode code_;
    std::shared_ptr<const Place> place_;
};

} // namespace MoxReader
