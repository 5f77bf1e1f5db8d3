#pragma once

#include <Qel/Tnf/Block.h>
#include <Qel/Tnf/Index.h>

#include <cstdint>
#include <string>

namespace QelTnf {

/// One name's stream, to put many values into without looking up the name and the environment for each.
///
/// Made for one call of the application, during which the environment stays as it is: the growth step is taken
/// from it when the object is made. The first value opens the name's first block.
class BlockStream {
public:
    /// @param index Must live as long as the object.
    /// @param name  Must live as long as the object.
    BlockStream(Index& index, const std::string& name);

    /// Appends one value, as Index::Put() does.
    template <typename T>
    void Put(const T& value) {
        NextBlock().Append(value);
    }
    void Put(const void* data, std::uint32_t size) { NextBlock().Append(data, size); }

    /// The block that takes the next value, which is good for that value alone.
    Block& NextBlock() {
        return limiter_ != nullptr && index_.TakesValues(*limiter_)
                   ? index_.BlockOf(limiter_->blockIds.back())
                   : OpenBlock();
    }

    /// The bytes of the stream before compression.
    std::uint64_t GetSize() const;

private:
    Block& OpenBlock();

    Index& index_;
    const std::string& name_;
    // Null until it is known where the name's blocks are.
    BlockSizeLimiter* limiter_;
};

} // namespace QelTnf
