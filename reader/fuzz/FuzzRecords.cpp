// Reads arbitrary bytes as the contents of the six streams, with an index that is made up around them, so that an input
// is small and each of its bytes is a byte of a record. Any outcome but a value or an Error is a bug.
//
//     moxreader_records_fuzz -max_len=2048 CORPUS_FOLDER

#include "SpanSource.h"
#include "Streams.h"
#include "TimeLimit.h"
#include "mutateStreams.h"
#include "readAll.h"

#include <algorithm>
#include <memory>

namespace {

using namespace MoxFuzz;
using MoxReader::BlockRecord;

/// The lowest two bits of the division say into how many blocks "Heavy Data" is divided, one of the upper four bits for
/// each of them whether it is lost, and the bit 0x04 whether the lost ones still state their lengths.
class Blocks {
public:
    explicit Blocks(std::uint8_t division) : division_(division) {}

    void add(std::string_view name, std::size_t length) {
        BlockRecord block;
        block.id = blocks_.size();
        block.name = name;
        block.length = static_cast<std::uint32_t>(length);
        block.contentLength = block.length;
        block.position = end_;
        end_ += length;
        blocks_.push_back(std::move(block));
    }

    void addHeavy(std::size_t length) {
        const std::size_t parts = 1 + (division_ & 3u);
        for (std::size_t i = 0; i < parts; ++i) {
            add(Streams::Names[Streams::Heavy], length * (i + 1) / parts - length * i / parts);
            if ((division_ >> (4 + i) & 1) != 0) {
                lose(blocks_.back());
            }
        }
    }

    std::vector<BlockRecord> take() { return std::move(blocks_); }

private:
    void lose(BlockRecord& block) const {
        block.flags = MoxReader::Format::FlagCompressed;
        if ((division_ & 4) != 0) {
            block.isOverwritten = true;
        } else {
            block.length = 0;
            block.contentLength.reset();
        }
    }

    std::uint8_t division_;
    std::vector<BlockRecord> blocks_;
    std::uint64_t end_ = Streams::HeadSize;
};

MoxReader::RawIndex indexOf(ByteSpan input) {
    const auto streams = Streams::fromInput(input);
    MoxReader::RawIndex index;
    index.fileSize = index.end = input.size();
    index.version = MoxReader::Format::SupportedVersion;
    Blocks blocks(streams.division);
    for (std::size_t i = 0; i < Streams::Heavy; ++i) {
        blocks.add(Streams::Names[i], streams.contents[i].size());
    }
    blocks.addHeavy(streams.contents[Streams::Heavy].size());
    index.blocks = blocks.take();
    return index;
}

std::size_t store(const Streams& streams, std::uint8_t* data, std::size_t maxSize) {
    const auto input = streams.toInput();
    const auto size = std::min(input.size(), maxSize);
    std::copy_n(input.begin(), size, data);
    return size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TimeLimit limit;
    const ByteSpan input(data, size);
    if (size < Streams::HeadSize) {
        return 0;
    }
    try {
        readAll(MoxReader::File(std::make_shared<SpanSource>(input), indexOf(input)));
    } catch (const MoxReader::Error&) {
        return 0;
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    std::minstd_rand chance(seed);
    auto streams = Streams::fromInput({data, size});
    mutateStreams(streams, std::max(maxSize, Streams::HeadSize) - Streams::HeadSize, chance);
    return store(streams, data, maxSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* otherData, std::size_t otherSize,
                                                 std::uint8_t* out, std::size_t maxSize, unsigned seed) {
    std::minstd_rand chance(seed);
    auto streams = Streams::fromInput({data, size});
    crossStreams(streams, Streams::fromInput({otherData, otherSize}), chance);
    return store(streams, out, maxSize);
}
