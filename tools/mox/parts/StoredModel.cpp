#include "StoredModel.h"

#include "../common/Failure.h"
#include "../common/Platform.h"
#include "../common/findFlaw.h"
#include "../common/utf8Path.h"
#include "../common/writeProblem.h"

#include <Qel/Mox/Format.h>
#include <Qel/Mox/Tree.h>
#include <Qel/Tnf/BlockZlibCompressor.h>
#include <Qel/Tnf/Format.h>
#include <Qel/Tnf/TemporaryBlock.h>

#include <MoxReader/BlockContent.h>
#include <MoxReader/FileSource.h>
#include <MoxReader/Format.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace MoxTool {

namespace {

std::string systemReason(int error) {
    return std::generic_category().message(error);
}

// The library fills in the date and the version of the format when it saves.
QelMox::ModifierInfo toModifierInfo(const SavedBy& by) {
    QelMox::ModifierInfo info;
    info.SourceName = by.sourceName;
    info.SourceVersion = by.sourceVersion;
    info.FormatVersion = QelMox::Format::FileVersion;
    info.Date = by.date;
    info.Computer = by.computer;
    info.User = by.user;
    info.Comment = by.comment;
    return info;
}

FileHandle openToGoOn(const std::string& path) {
    FileHandle file(std::fopen(path.c_str(), "r+b"));
    if (file != nullptr) {
        std::setvbuf(file.get(), nullptr, _IONBF, 0);
    }
    return file;
}

} // namespace

StoredModel::StoredModel(std::string path, std::string shown)
    : path_(std::move(path)), shown_(std::move(shown)), tree_(std::make_unique<QelMox::Tree>()) {}

StoredModel::~StoredModel() = default;

// The tree opens the file again to write the rest.
void StoredModel::create() {
    constexpr int ForWriting = 0;
    if (isCreated_) {
        return;
    }
    try {
        tree_->SetStreamFile(path_, 0, &ForWriting);
    } catch (const std::exception& failure) {
        failToWrite(failure.what());
    }
    tree_->File.CloseFile();
    isCreated_ = true;
}

std::uint64_t StoredModel::heavySize() const {
    return tree_->File.GetIndex().GetStreamSize(QelMox::Format::HeavyData);
}

// Blocks that lie one after the other in both files are copied in one go.
void StoredModel::copyBlocks(std::FILE* source, const std::string& sourcePath,
                             std::span<const StoredBlock> blocks) {
    std::uint64_t from = 0;
    std::uint64_t to = 0;
    std::uint64_t size = 0;
    for (const auto& block : blocks) {
        if (!block.isCompressed) {
            copyRun(source, sourcePath, from, to, std::exchange(size, 0));
            copyUncompressed(source, sourcePath, block);
            continue;
        }
        const auto place = addBlock(block.length, block.contentLength);
        if (size != 0 && (from + size != block.place || to + size != place)) {
            copyRun(source, sourcePath, from, to, std::exchange(size, 0));
        }
        if (size == 0) {
            from = block.place;
            to = place;
        }
        size += block.length;
    }
    copyRun(source, sourcePath, from, to, size);
}

void StoredModel::copyUncompressed(std::FILE* source, const std::string& sourcePath,
                                   const StoredBlock& block) {
    std::vector<std::uint8_t> content(block.length);
    if (!Platform::readAt(source, block.place, content.data(), content.size())) {
        throw Failure(sourcePath, "can't be read");
    }
    addContent(content);
}

/// @return its place in the file.
std::uint64_t StoredModel::addBlock(std::uint32_t length, std::uint32_t contentLength) {
    const std::string& name = QelMox::Format::HeavyData;
    auto& index = tree_->File.GetIndex();
    index.SetBlockFlags(name, QelTnf::Format::BlockFreezable);
    const auto id = index.AddStoredBlock(name, length, contentLength);
    return index.GetBlockInfos()[id].position;
}

void StoredModel::copyRun(std::FILE* source, const std::string& sourcePath, std::uint64_t from,
                          std::uint64_t to, std::uint64_t size) {
    if (size == 0) {
        return;
    }
    auto* const target = stream();
    errno = 0;
    switch (Platform::copyBytes(source, from, target, to, size)) {
    case Platform::CopyEnd::Whole:
        return;
    case Platform::CopyEnd::SourceEnded:
        throw Failure(sourcePath, "has become shorter while it was read");
    case Platform::CopyEnd::ReadFailed:
        throw Failure(sourcePath, "can't be read: " + systemReason(errno));
    case Platform::CopyEnd::WriteFailed:
        failToWrite(systemReason(errno));
    }
}

void StoredModel::addContent(std::span<const std::uint8_t> content) {
    QelTnf::TemporaryBlock block;
    block.Get().Append(content.data(), static_cast<std::uint32_t>(content.size()));
    QelTnf::BlockZlibCompressor compressor(QelTnf::Format::CompressionLevel);
    compressor(block.Get());
    if (block.Get().GetSize() == 0) {
        failToWrite("a block of numbers is too large to be compressed");
    }
    const auto place = addBlock(block.Get().GetSize(), static_cast<std::uint32_t>(content.size()));
    auto* const target = stream();
    if (!Platform::writeAt(target, place, block.Get().GetData(), block.Get().GetSize())) {
        failToWrite(systemReason(errno));
    }
}

void StoredModel::markLastBlock() {
    tree_->File.SetBlockFlags(QelMox::Format::HeavyData, QelTnf::Format::BlockFreezable);
}

std::FILE* StoredModel::stream() {
    create();
    if (stream_ == nullptr) {
        stream_ = openToGoOn(path_);
    }
    if (stream_ == nullptr) {
        failToWrite(systemReason(errno));
    }
    return stream_.get();
}

void StoredModel::pause() {
    if (stream_ != nullptr && std::fclose(stream_.release()) != 0) {
        failToWrite(systemReason(errno));
    }
}

void StoredModel::save(const SavedBy& by) {
    create();
    pause();
    for (const auto& save : by.earlier) {
        tree_->ModifierInfos.push_back(toModifierInfo(save));
    }
    tree_->CurrentModifier = toModifierInfo(by);
    try {
        tree_->File.OpenFile(path_, "r+b");
        tree_->SaveFile(tree_->File, by.comment);
        tree_.reset();
        checkSaved();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& flaw) {
        failToWrite(writeProblem(path_).value_or(flaw.what()));
    }
}

// The blocks of numbers were looked at when they were written. The library that writes the rest does not do that.
void StoredModel::checkSaved() const {
    const MoxReader::File file(pathOf(path_));
    if (const auto flaw = findIndexFlaw(file)) {
        throw std::runtime_error("the saved file is not whole: " + *flaw);
    }
    for (const auto& block : file.blocks()) {
        if (block.isCompressed() && block.name != MoxReader::Format::HeavyStream &&
            MoxReader::readBlockContent(file.source(), block).damage) {
            throw std::runtime_error("the saved file is not whole: " + block.name + " can't be read back");
        }
    }
}

void StoredModel::failToWrite(const std::string& reason) const {
    throw Failure(shown_, "can't be written: " + reason);
}

} // namespace MoxTool
