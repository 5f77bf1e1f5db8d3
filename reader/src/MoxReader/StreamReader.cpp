#include "MoxReader/StreamReader.h"

#include "MoxReader/BlockContent.h"
#include "MoxReader/LittleEndian.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

namespace MoxReader {

namespace {

Error blockError(ErrorCode code, const BlockRecord& block) {
    return Error(code, {.fileOffset = block.position, .blockId = block.id, .name = block.name});
}

/// Whether a block with this damage can still have a correct content length.
bool leavesLength(ErrorCode damage) {
    return damage == ErrorCode::ContentLost || damage == ErrorCode::BlockOverwritten;
}

} // namespace

StreamReader::StreamReader(std::shared_ptr<Source> source, std::string name, std::vector<BlockRecord> blocks)
    : source_(std::move(source)),
      name_(std::move(name)),
      blocks_(std::move(blocks)),
      starts_{0},
      knownSound_(blocks_.size()) {
    for (const auto& block : blocks_) {
        const auto damage = findLengthDamage(block, source_->size());
        if (damage && !(leavesLength(*damage) && block.contentLength)) {
            damage_ = blockError(*damage, block);
            return;
        }
        starts_.push_back(starts_.back() + block.contentLength.value_or(block.length));
    }
}

void StreamReader::seek(std::uint64_t position) {
    if (position > size()) {
        throw damage_ ? *damage_ : Error(ErrorCode::EndOfStream, {.name = name_, .streamOffset = position});
    }
    position_ = position;
}

void StreamReader::skip(std::uint64_t count) {
    require(count);
    position_ += count;
}

void StreamReader::require(std::uint64_t count) const {
    if (count > remaining()) {
        throw damage_ ? *damage_ : Error(ErrorCode::EndOfStream, place());
    }
}

void StreamReader::read(std::span<std::uint8_t> target) {
    require(target.size());
    while (!target.empty()) {
        const auto block = blockAt(position_);
        load(block);
        const auto offset = static_cast<std::size_t>(position_ - starts_[block]);
        const auto count = std::min(target.size(), content_.size() - offset);
        std::copy_n(content_.begin() + static_cast<std::ptrdiff_t>(offset), count, target.begin());
        target = target.subspan(count);
        position_ += count;
    }
}

// Blocks without content share their start with the next block and are never the result.
std::size_t StreamReader::blockAt(std::uint64_t position) const {
    const bool isInLoaded = loaded_ && starts_[*loaded_] <= position && position < starts_[*loaded_ + 1];
    if (isInLoaded) {
        return *loaded_;
    }
    const auto after = std::ranges::upper_bound(starts_, position);
    return static_cast<std::size_t>(std::distance(starts_.begin(), after)) - 1;
}

void StreamReader::load(std::size_t block) {
    if (loaded_ == block) {
        return;
    }
    loaded_.reset();
    auto content = readBlockContent(*source_, blocks_[block], std::move(content_));
    if (content.damage) {
        throw blockError(*content.damage, blocks_[block]);
    }
    content_ = std::move(content.bytes);
    loaded_ = block;
    knownSound_[block] = true;
}

std::vector<std::uint8_t> StreamReader::readBytes(std::uint64_t count) {
    require(count);
    if (count > std::numeric_limits<std::size_t>::max()) {
        throw std::bad_alloc();
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count));
    read(bytes);
    return bytes;
}

std::span<const std::uint8_t> StreamReader::view(std::uint64_t count, std::vector<std::uint8_t>& room) {
    require(count);
    if (count == 0) {
        return {};
    }
    const auto block = blockAt(position_);
    if (count > starts_[block + 1] - position_) {
        return room = readBytes(count);
    }
    load(block);
    const auto offset = static_cast<std::size_t>(position_ - starts_[block]);
    position_ += count;
    return std::span(content_).subspan(offset, static_cast<std::size_t>(count));
}

template <class T>
T StreamReader::readNumber() {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    read(bytes);
    return littleEndian<T>(bytes.data());
}

bool StreamReader::readBool() {
    const auto start = place();
    const auto value = readNumber<std::uint8_t>();
    if (value > 1) {
        throw Error(ErrorCode::BadValue, start);
    }
    return value == 1;
}

std::string StreamReader::readString() {
    const auto length = readNumber<std::uint32_t>();
    require(length);
    std::string text(length, '\0');
    read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()});
    return text;
}

template <class T>
std::vector<T> StreamReader::readNumbers() {
    const std::uint64_t count = readCount(sizeof(T));
    const auto bytes = readBytes(count * sizeof(T));
    std::vector<T> numbers(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = littleEndian<T>(&bytes[i * sizeof(T)]);
    }
    return numbers;
}

std::vector<std::string> StreamReader::readStrings() {
    const auto count = readCount(sizeof(std::uint32_t));
    std::vector<std::string> strings;
    for (std::uint32_t i = 0; i < count; ++i) {
        strings.push_back(readString());
    }
    return strings;
}

std::uint32_t StreamReader::readCount(std::uint64_t minSize) {
    const auto start = place();
    const auto count = readNumber<std::uint32_t>();
    if (count > remaining() / minSize) {
        throw damage_ ? *damage_ : Error(ErrorCode::BadCount, start);
    }
    return count;
}

Place StreamReader::place() const {
    return {.name = name_, .streamOffset = position_};
}

template std::uint8_t StreamReader::readNumber<std::uint8_t>();
template std::uint32_t StreamReader::readNumber<std::uint32_t>();
template std::uint64_t StreamReader::readNumber<std::uint64_t>();
template float StreamReader::readNumber<float>();
template double StreamReader::readNumber<double>();

template std::vector<std::uint8_t> StreamReader::readNumbers<std::uint8_t>();
template std::vector<std::uint32_t> StreamReader::readNumbers<std::uint32_t>();
template std::vector<std::uint64_t> StreamReader::readNumbers<std::uint64_t>();
template std::vector<float> StreamReader::readNumbers<float>();
template std::vector<double> StreamReader::readNumbers<double>();

} // namespace MoxReader
