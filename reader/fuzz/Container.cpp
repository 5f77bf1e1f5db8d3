#include "Container.h"

#include "littleEndian.h"

#include <zlib.h>

#include <algorithm>
#include <string>

namespace MoxFuzz {

namespace {

constexpr std::uint8_t Front[] = {0x89, 'T', 'N', 'F', '\r', '\n', 0x1A, '\n', '1', '.', '3', 0};
constexpr std::size_t TableSize = 2784;
constexpr std::size_t HeadSize = 16 + TableSize;
constexpr std::size_t RecordSize = 139;
constexpr std::size_t Records = 20;
constexpr std::size_t LengthAt = 133; ///< In a record; the flags follow.
constexpr std::size_t MostContent = 1u << 16;
constexpr std::string_view EmptyName = "\x0B"
                                       "Empty Block ";

/// What can be inflated, up to a limit.
Bytes inflated(ByteSpan stored) {
    if (stored.size() < 4) {
        return {};
    }
    Bytes content(std::min<std::size_t>(wordAt(stored, 0), MostContent));
    auto size = static_cast<uLongf>(content.size());
    uncompress(content.data(), &size, stored.data() + 4, static_cast<uLong>(stored.size() - 4));
    content.resize(std::min<std::size_t>(size, content.size()));
    return content;
}

Bytes deflated(ByteSpan content, int level) {
    auto size = compressBound(static_cast<uLong>(content.size()));
    Bytes stored;
    appendWord(stored, static_cast<std::uint32_t>(content.size()));
    stored.resize(4 + size);
    compress2(stored.data() + 4, &size, content.data(), static_cast<uLong>(content.size()), level);
    stored.resize(4 + size);
    return stored;
}

class Writer {
public:
    explicit Writer(std::minstd_rand& chance) : chance_(chance), file_(std::begin(Front), std::end(Front)) {
        appendWord(file_, TableSize);
        appendWord(file_, Records);
        file_.resize(HeadSize);
        for (std::size_t id = 0; id < Records; ++id) {
            setRecord(id, EmptyName, 0, 0);
        }
    }

    /// In one block, or in two of the same kind.
    void addStream(std::string_view name, ByteSpan content) {
        const auto first = chance_() % 4 == 0 ? content.size() / 2 : content.size();
        addBlock(name, content.first(first));
        if (first < content.size()) {
            addBlock(name, content.subspan(first));
        }
    }

    Bytes take() { return std::move(file_); }

private:
    void addBlock(std::string_view name, ByteSpan content) {
        const bool isCompressed = chance_() % 2 == 0;
        const auto stored = isCompressed ? deflated(content, static_cast<int>(chance_() % 2))
                                         : Bytes(content.begin(), content.end());
        setRecord(id_++, name, static_cast<std::uint32_t>(stored.size()), isCompressed ? 1 : 0);
        file_.insert(file_.end(), stored.begin(), stored.end());
    }

    void setRecord(std::size_t id, std::string_view name, std::uint32_t length, std::uint8_t flags) {
        const auto place = HeadSize - (Records - id) * RecordSize;
        const auto start = file_.begin() + static_cast<std::ptrdiff_t>(place);
        std::fill_n(start, RecordSize, std::uint8_t{0});
        file_[place] = static_cast<std::uint8_t>(id + 1);
        setWord(file_, place + 1, 128);
        std::ranges::copy(name, start + 5);
        setWord(file_, place + LengthAt, length);
        file_[place + LengthAt + 4] = flags;
    }

    std::minstd_rand& chance_;
    Bytes file_;
    std::size_t id_ = 0;
};

} // namespace

std::optional<Streams> unpack(ByteSpan file) {
    if (file.size() < HeadSize || !std::equal(std::begin(Front), std::end(Front), file.begin())) {
        return std::nullopt;
    }
    Streams streams;
    auto blocks = file.subspan(HeadSize);
    for (std::size_t id = 0; id < Records; ++id) {
        const auto record = file.subspan(HeadSize - (Records - id) * RecordSize, RecordSize);
        const auto stored = blocks.first(std::min<std::size_t>(wordAt(record, LengthAt), blocks.size()));
        blocks = blocks.subspan(stored.size());
        const auto text = record.subspan(5, 128);
        const std::string name(text.begin(), std::ranges::find(text, 0));
        const auto found = std::ranges::find(Streams::Names, name);
        if (found == Streams::Names.end()) {
            continue;
        }
        const bool isCompressed = (record[LengthAt + 4] & 1) != 0;
        const auto content = isCompressed ? inflated(stored) : Bytes(stored.begin(), stored.end());
        auto& stream = streams.contents[static_cast<std::size_t>(found - Streams::Names.begin())];
        stream.insert(stream.end(), content.begin(), content.end());
    }
    return streams;
}

Bytes pack(const Streams& streams, std::minstd_rand& chance) {
    Writer writer(chance);
    for (std::size_t i = Streams::Count; i > 0; --i) {
        // Without a block a stream is missing, which few streams may be.
        if (!streams.contents[i - 1].empty() || chance() % 4 == 0) {
            writer.addStream(Streams::Names[i - 1], streams.contents[i - 1]);
        }
    }
    return writer.take();
}

} // namespace MoxFuzz
