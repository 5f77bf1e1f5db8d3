#include <Qel/Tnf/BlockSizeLimiter.h>

#include <Qel/Tnf/BlockSizeVariable.h>

namespace QelTnf {

namespace {
constexpr std::uint32_t DefaultLimit = 209'715'200;
}

BlockSizeLimiter::BlockSizeLimiter() : limit(blockSizeVariable().value_or(DefaultLimit)) {}

} // namespace QelTnf
