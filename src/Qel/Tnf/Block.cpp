#include <Qel/Tnf/Block.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Tnf/BlockSizeVariable.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace QelTnf {

std::uint32_t defaultBlockSize = 10'485'760;

void Block::Put(const void* const& source, const unsigned int& count) {
    takeEnvironment();
    append(source, count);
}

void Block::Put(const std::string& text) {
    takeEnvironment();
    append(text);
}

void Block::takeEnvironment() {
    defaultBlockSize = blockSizeVariable().value_or(defaultBlockSize);
}

void Block::append(const void* const source, std::uint32_t count) {
    restoreReleasedBuffer();
    growFor(count);
    if (count != 0) {
        std::memcpy(data + position, source, count);
    }
    position += count;
    size = std::max(size, position);
}

void Block::append(const std::string& text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    append(length);
    if (length != 0) {
        append(text.data(), length);
    }
}

// The sum is formed in 64 bits: near 4 GiB the position wraps, and the bytes ahead of that need room all the
// same.
void Block::growFor(std::uint32_t count) {
    if (std::uint64_t{position} + count >= capacity) {
        AllocateAdditionalMemory(std::max(count, defaultBlockSize));
    }
}

// Values reach a block that has already been written only when a close is repeated after a failure.
void Block::restoreReleasedBuffer() {
    if (data == nullptr && capacity != 0) {
        AllocateAdditionalMemory(0);
        std::memset(data, 0, size);
    }
}

void Block::AllocateAdditionalMemory(const std::uint64_t& additional) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t total = additional > largest - capacity ? largest : capacity + additional;
    // Some platforms answer a request for nothing with a null pointer, which is no failure.
    if (total == 0) {
        return;
    }
    void* const grown = total > std::numeric_limits<std::size_t>::max()
                            ? nullptr
                            : std::realloc(data, static_cast<std::size_t>(total));
    if (grown == nullptr) {
        QEL_THROW(Qel::Exception::MemoryAllocationException());
    }
    data = static_cast<unsigned char*>(grown);
    capacity += additional;
}

void Block::SetPosition(const unsigned int& newPosition) {
    if (newPosition > size) {
        QEL_THROW(Qel::Exception::OutOfBounds("Invalid block position"));
    }
    position = newPosition;
}

void Block::Write(std::FILE* const stream, bool withLength) const {
    // Deliberately blind to failed writes: applications check the finished file.
    if (withLength) {
        (void)std::fwrite(&size, sizeof(size), 1, stream);
    }
    if (size != 0 && data != nullptr) {
        (void)std::fwrite(data, size, 1, stream);
    }
    if (std::feof(stream) != 0) {
        QEL_THROW(Qel::Exception::FileWriteException("Unable to write to file"));
    }
}

void Block::release() {
    std::free(std::exchange(data, nullptr));
}

unsigned char* Block::detach() {
    return std::exchange(*this, Block()).data;
}

} // namespace QelTnf
