#include "inflateStream.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <span>
#include <vector>

namespace MoxTool {

namespace {

constexpr std::size_t ChunkSize = 65536;

/// One attempt.
class StreamInflater {
public:
    StreamInflater(MoxReader::Source& bytes, std::uint64_t start, std::uint64_t contentLength,
                   std::ostream& target)
        : source(bytes),
          position(start),
          room(contentLength),
          out(target),
          input(ChunkSize),
          output(ChunkSize) {
        if (inflateInit(&zlib) != Z_OK)
            throw std::bad_alloc();
    }
    StreamInflater(const StreamInflater&) = delete;
    StreamInflater& operator=(const StreamInflater&) = delete;
    ~StreamInflater() { inflateEnd(&zlib); }

    InflateResult run() {
        int status = Z_OK;
        while (status == Z_OK) {
            if (zlib.avail_in == 0 && !refill())
                return {InflateResult::CutOff, consumed(), produced};
            status = inflatePiece();
        }
        const bool isWhole = status == Z_STREAM_END && produced == room;
        return {isWhole ? InflateResult::Whole : InflateResult::Damaged, consumed(), produced};
    }

private:
    bool refill() {
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(ChunkSize, source.size() - position));
        source.read(position, std::span(input).first(size));
        position += size;
        taken += size;
        zlib.next_in = input.data();
        zlib.avail_in = static_cast<uInt>(size);
        return size > 0;
    }

    int inflatePiece() {
        int status = Z_OK;
        do {
            zlib.next_out = output.data();
            zlib.avail_out = static_cast<uInt>(ChunkSize);
            status = inflate(&zlib, Z_NO_FLUSH);
            const auto count = ChunkSize - zlib.avail_out;
            if (count > room - produced)
                return Z_DATA_ERROR;
            out.write(reinterpret_cast<const char*>(output.data()), static_cast<std::streamsize>(count));
            produced += count;
        } while (status == Z_OK && zlib.avail_out == 0);
        return status == Z_BUF_ERROR ? Z_OK : status; // which only says that there was nothing more to give
    }

    std::uint64_t consumed() const { return taken - zlib.avail_in; }

    MoxReader::Source& source;
    std::uint64_t position;
    std::uint64_t room;
    std::ostream& out;
    std::vector<std::uint8_t> input;
    std::vector<std::uint8_t> output;
    z_stream zlib{};
    std::uint64_t taken = 0; ///< Bytes out of the source.
    std::uint64_t produced = 0;
};

} // namespace

InflateResult inflateStream(MoxReader::Source& source, std::uint64_t position, std::uint64_t contentLength,
                            std::ostream& out) {
    return StreamInflater(source, position, contentLength, out).run();
}

} // namespace MoxTool
