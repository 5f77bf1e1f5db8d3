#pragma once

#include "../common/FileHandle.h"
#include "StoredBlock.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace QelMox {
class Tree;
}

namespace MoxTool {

/// Who saved a model, as a file says.
struct SavedBy {
    std::string sourceName{};
    std::string sourceVersion{};
    std::string computer{};
    std::string user{};
    std::string comment{};
    std::string date{};             ///< Of an earlier save alone; that of this one is the present.
    std::vector<SavedBy> earlier{}; ///< What the file says about saves before this one.

    bool operator==(const SavedBy&) const = default;
};

/// A new model file whose numbers come as blocks of other files. The blocks go into the file at once, as they are
/// stored; the tree is written at the end.
///
/// All blocks lie where the format wants them, however large they are. The size of those of the tree depends on the
/// environment, unless a BlockSizeSetting exists.
class StoredModel {
public:
    /// Creates nothing yet.
    /// @param path  Where to write; nothing is there.
    /// @param shown The name for messages, since the path may be a temporary one.
    StoredModel(std::string path, std::string shown);
    StoredModel(const StoredModel&) = delete;
    StoredModel& operator=(const StoredModel&) = delete;
    ~StoredModel();

    /// The tree to fill, until save().
    QelMox::Tree& tree() { return *tree_; }

    /// Bytes of "Heavy Data" so far, before compression.
    std::uint64_t heavySize() const;

    /// Appends blocks to "Heavy Data", byte for byte; those that are not compressed are.
    /// @param source  The file that has them, opened without a buffer.
    /// @param sourcePath For messages.
    /// @throws Failure if they can't be read or written.
    void copyBlocks(std::FILE* source, const std::string& sourcePath, std::span<const StoredBlock> blocks);

    /// Appends a block with this content, compressed, to "Heavy Data".
    /// @throws Failure if it can't be compressed or written.
    void addContent(std::span<const std::uint8_t> content);

    /// Says that the last block has more than one array, as each one but the last is taken to have.
    void markLastBlock();

    /// Closes the file until the next block, so that many models can be in the making.
    /// @throws Failure if what was written does not reach the disk.
    void pause();

    /// Writes the tree, completes the file, closes it and makes sure that it has reached the disk. Nothing else may be
    /// called after that.
    /// @throws Failure if it can't be written.
    void save(const SavedBy& by);

private:
    void create();
    std::FILE* stream();
    std::uint64_t addBlock(std::uint32_t length, std::uint32_t contentLength);
    void copyUncompressed(std::FILE* source, const std::string& sourcePath, const StoredBlock& block);
    void copyRun(std::FILE* source, const std::string& sourcePath, std::uint64_t from, std::uint64_t to,
                 std::uint64_t size);
    void checkSaved() const;
    [[noreturn]] void failToWrite(const std::string& reason) const;

    std::string path_;
    std::string shown_;
    std::unique_ptr<QelMox::Tree> tree_;
    bool isCreated_ = false;
    FileHandle stream_;
};

} // namespace MoxTool
