#include "BlockSizeSetting.h"

#include "Platform.h"

#include <cstdlib>
#include <limits>

namespace MoxTool {

namespace {

constexpr const char* Variable = "MOXWRITER_DEFAULT_BLOCK_SIZE";
constexpr std::uint32_t LibrarySize = 209'715'200;

std::optional<std::string> environment() {
    const char* const text = std::getenv(Variable);
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace

BlockSizeSetting::BlockSizeSetting(std::optional<std::uint32_t> size) : former_(environment()) {
    Platform::setEnvironment(Variable, size ? std::optional(std::to_string(*size)) : std::nullopt);
}

BlockSizeSetting::~BlockSizeSetting() {
    Platform::setEnvironment(Variable, former_);
}

// As the library reads it, except for signs: what no number stands for counts as 0.
std::uint32_t BlockSizeSetting::present() {
    const auto text = environment();
    if (!text) {
        return LibrarySize;
    }
    const auto number = std::strtoull(text->c_str(), nullptr, 10);
    return number >= std::numeric_limits<std::uint32_t>::max() ? LibrarySize
                                                               : static_cast<std::uint32_t>(number);
}

} // namespace MoxTool
