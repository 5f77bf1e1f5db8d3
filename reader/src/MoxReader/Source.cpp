#include "MoxReader/Source.h"

#include "MoxReader/Error.h"

namespace MoxReader {

void Source::read(std::uint64_t offset, std::span<std::uint8_t> target) {
    if (offset > size() || target.size() > size() - offset) {
        throw Error(ErrorCode::Truncated, {.fileOffset = offset});
    }
    if (!target.empty()) {
        readInside(offset, target);
    }
}

} // namespace MoxReader
