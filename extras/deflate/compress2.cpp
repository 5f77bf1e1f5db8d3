// zlib's compress2() by libdeflate, which makes the same kind of stream in less time. A program that has this library
// before zlib in its order of symbols takes this function; zlib does what libdeflate can't.

#include <MoxWriterDeflate/compressor.h>

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <limits>
#include <memory>

#define MOXWRITER_DEFLATE_EXPORT __attribute__((visibility("default")))

namespace {

std::atomic<MoxWriterCompressor> chosen = MOXWRITER_COMPRESSOR_DEFLATE;
std::atomic<unsigned long long> callsOfDeflate = 0;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

// zlib numbers its levels from 1, the fastest, to 9. Its 0, which compresses nothing, and what it refuses are left to
// it, and so is empty input, of which libdeflate makes other, longer bytes.
bool isForDeflate(const Bytef* dest, const Bytef* source, uLong sourceLen, int level) {
    const bool isLevel =
        level == Z_DEFAULT_COMPRESSION || (level >= Z_BEST_SPEED && level <= Z_BEST_COMPRESSION);
    return chosen.load() == MOXWRITER_COMPRESSOR_DEFLATE && dest != nullptr && source != nullptr &&
           sourceLen != 0 && isLevel;
}

// A compressor of its own for each call, so that threads need not share one.
// @return the compressed size, or 0 if there is too little room or memory.
std::size_t deflateWithLibdeflate(Bytef* dest, uLong room, const Bytef* source, uLong sourceLen, int level) {
    constexpr int defaultLevel = 6;
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(level == Z_DEFAULT_COMPRESSION ? defaultLevel : level));
    return compressor == nullptr ? 0
                                 : libdeflate_zlib_compress(compressor.get(), source, sourceLen, dest, room);
}

// What zlib counts in 32 bits: as much of `left` as fits.
uInt takePart(uLong& left) {
    const auto part = static_cast<uInt>(std::min<uLong>(left, std::numeric_limits<uInt>::max()));
    left -= part;
    return part;
}

// compress2() as zlib has it, by zlib's other functions: its own compress2() can't be called from here, since that
// name is this library's.
int deflateWithZlib(Bytef* dest, uLongf* destLen, const Bytef* source, uLong sourceLen, int level) {
    uLong room = *destLen;
    *destLen = 0;
    z_stream stream{};
    if (const int failure = deflateInit(&stream, level); failure != Z_OK) {
        return failure;
    }
    stream.next_out = dest;
    stream.next_in = const_cast<Bytef*>(source);
    int result = Z_OK;
    while (result == Z_OK) {
        if (stream.avail_out == 0) {
            stream.avail_out = takePart(room);
        }
        if (stream.avail_in == 0) {
            stream.avail_in = takePart(sourceLen);
        }
        result = deflate(&stream, sourceLen != 0 ? Z_NO_FLUSH : Z_FINISH);
    }
    *destLen = stream.total_out;
    deflateEnd(&stream);
    return result == Z_STREAM_END ? Z_OK : result;
}

} // namespace

extern "C" MOXWRITER_DEFLATE_EXPORT int compress2(Bytef* dest, uLongf* destLen, const Bytef* source,
                                                  uLong sourceLen, int level) {
    if (isForDeflate(dest, source, sourceLen, level)) {
        const std::size_t size = deflateWithLibdeflate(dest, *destLen, source, sourceLen, level);
        if (size != 0) {
            *destLen = static_cast<uLongf>(size);
            ++callsOfDeflate;
            return Z_OK;
        }
    }
    return deflateWithZlib(dest, destLen, source, sourceLen, level);
}

extern "C" MOXWRITER_DEFLATE_EXPORT void moxwriter_set_compressor(MoxWriterCompressor compressor) {
    chosen = compressor;
}

extern "C" MOXWRITER_DEFLATE_EXPORT MoxWriterCompressor moxwriter_compressor() {
    return chosen;
}

extern "C" MOXWRITER_DEFLATE_EXPORT unsigned long long moxwriter_deflate_calls() {
    return callsOfDeflate;
}
