#include "MoxReader/File.h"

#include "MoxReader/FileSource.h"

#include <utility>

namespace MoxReader {

namespace {

RawIndex soundIndex(Source& source) {
    auto index = scanIndex(source);
    if (!index.damage.empty()) {
        throw Error(index.damage.front());
    }
    return index;
}

} // namespace

File::File(const std::filesystem::path& path) : File(std::make_shared<FileSource>(path)) {}

File::File(std::shared_ptr<Source> source) : source_(std::move(source)), index_(soundIndex(*source_)) {
    collectStreams();
}

File::File(std::shared_ptr<Source> source, RawIndex index)
    : source_(std::move(source)), index_(std::move(index)) {
    collectStreams();
}

void File::collectStreams() {
    for (std::size_t i = 0; i < index_.blocks.size(); ++i) {
        const auto& block = index_.blocks[i];
        if (block.isIndexBlock() || block.isEmptyEntry()) {
            continue;
        }
        auto& members = streams_[block.name];
        if (members.empty()) {
            names_.push_back(block.name);
        }
        members.push_back(i);
    }
}

StreamReader File::stream(std::string_view name) const {
    std::vector<BlockRecord> blocks;
    if (const auto found = streams_.find(name); found != streams_.end()) {
        for (const auto place : found->second) {
            blocks.push_back(index_.blocks[static_cast<std::size_t>(place)]);
        }
    }
    return StreamReader(source_, std::string(name), std::move(blocks));
}

std::vector<std::uint8_t> File::readBlock(std::uint64_t id) const {
    if (id >= index_.blocks.size()) {
        throw Error(ErrorCode::NoSuchBlock, {.blockId = id});
    }
    const auto& block = index_.blocks[static_cast<std::size_t>(id)];
    auto content = readBlockContent(*source_, block);
    if (content.damage) {
        throw Error(*content.damage, {.fileOffset = block.position, .blockId = id, .name = block.name});
    }
    return std::move(content.bytes);
}

} // namespace MoxReader
