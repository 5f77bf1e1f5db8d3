#include <Qel/Tnf/BlockZlibCompressor.h>

#include <Qel/Exception/Throw.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <zlib.h>

namespace QelTnf {

namespace {

struct FreeBytes {
    void operator()(unsigned char* bytes) const { std::free(bytes); }
};
using Bytes = std::unique_ptr<unsigned char[], FreeBytes>;

// The room given to zlib. Single precision makes it inexact for large blocks, and it wraps near 4 GiB, where
// zlib then fails and the content is lost: files have always come out like that.
std::uint32_t compressedBound(std::uint32_t contentLength) {
    const float expanded = static_cast<float>(contentLength) * 1.2F;
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(expanded) + 12);
}

} // namespace

void BlockZlibCompressor::operator()(Block& block) {
    const std::uint32_t contentLength = block.GetSize();
    Bytes content(block.GetData() != nullptr ? block.Detach() : nullptr);

    uLongf compressedLength = compressedBound(contentLength);
    const std::size_t capacity = sizeof(contentLength) + compressedLength;
    Bytes compressed(static_cast<unsigned char*>(std::malloc(capacity)));
    if (compressed == nullptr) {
        QEL_THROW(Qel::Exception::MemoryAllocationException());
    }
    std::memcpy(compressed.get(), &contentLength, sizeof(contentLength));
    if (compress2(compressed.get() + sizeof(contentLength), &compressedLength, content.get(), contentLength,
                  level_) != Z_OK) {
        // Not reported, and the content is neither restored nor freed: the block goes out empty.
        (void)content.release();
        return;
    }
    block.Attach(compressed.release(), capacity,
                 static_cast<std::uint32_t>(sizeof(contentLength) + compressedLength));
}

} // namespace QelTnf
