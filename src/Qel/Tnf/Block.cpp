#include <Qel/Tnf/Block.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Tnf/BlockSizeVariable.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace QelTnf {

std::uint32_t defaultBlockSize = 10'485'760;

namespace {

// All models of the process share the step, also those that are saved on several threads at once.
std::atomic_ref<std::uint32_t> growthStep() {
    return std::atomic_ref<std::uint32_t>(defaultBlockSize);
}

} // namespace

void Block::Put(const void* const& source, const unsigned int& count) {
    TakeEnvironment();
    Append(source, count);
}

void Block::TakeEnvironment() {
    if (const std::optional<std::uint32_t> size = blockSizeVariable()) {
        growthStep().store(*size, std::memory_order_relaxed);
    }
}

void Block::Append(std::string_view text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    Append(length);
    if (length != 0) {
        Append(text.data(), length);
    }
}

void Block::MakeRoomFor(std::uint32_t count) {
    RestoreReleasedBuffer();
    if (!HasRoomFor(count)) {
        AllocateAdditionalMemory(std::max(count, growthStep().load(std::memory_order_relaxed)));
    }
}

// Values reach a block that has already been written only when a close is repeated after a failure.
void Block::RestoreReleasedBuffer() {
    if (data_ == nullptr && capacity_ != 0) {
        AllocateAdditionalMemory(0);
        std::memset(data_, 0, size_);
    }
}

void Block::AllocateAdditionalMemory(const std::uint64_t& additional) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t total = additional > largest - capacity_ ? largest : capacity_ + additional;
    // Some platforms return a null pointer for a request of 0 bytes, which is no failure.
    if (total == 0) {
        return;
    }
    void* const grown = total > std::numeric_limits<std::size_t>::max()
                            ? nullptr
                            : std::realloc(data_, static_cast<std::size_t>(total));
    if (grown == nullptr) {
        QEL_THROW(Qel::Exception::MemoryAllocationException());
    }
    data_ = static_cast<unsigned char*>(grown);
    capacity_ += additional;
}

void Block::SetPosition(const unsigned int& newPosition) {
    if (newPosition > size_) {
        QEL_THROW(Qel::Exception::OutOfBounds("Invalid block position"));
    }
    position_ = newPosition;
}

void Block::Write(std::FILE* const stream, bool withLength) const {
    // Failed writes are deliberately ignored: applications check the finished file.
    if (withLength) {
        (void)std::fwrite(&size_, sizeof(size_), 1, stream);
    }
    if (size_ != 0 && data_ != nullptr) {
        (void)std::fwrite(data_, size_, 1, stream);
    }
    if (std::feof(stream) != 0) {
        QEL_THROW(Qel::Exception::FileWriteException("Unable to write to file"));
    }
}

void Block::Release() {
    std::free(std::exchange(data_, nullptr));
}

void Block::Attach(unsigned char* const buffer, std::uint64_t capacity, std::uint32_t size) {
    data_ = buffer;
    capacity_ = capacity;
    size_ = size;
    position_ = size;
}

unsigned char* Block::Detach() {
    return std::exchange(*this, Block()).data_;
}

} // namespace QelTnf
