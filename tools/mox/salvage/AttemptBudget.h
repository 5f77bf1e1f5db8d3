#pragma once

#include "BlockAttempt.h"

#include <MoxReader/Format.h>

#include <algorithm>
#include <cstdint>

namespace MoxTool {

/// The work that failing attempts may take in total, in proportion to the file: bytes can be laid out so that
/// each of very many places looks like the beginning of a block that extends to the end of the file.
class AttemptBudget {
public:
    explicit AttemptBudget(std::uint64_t fileSize)
        : bytesToRead(ReadsOfTheFile * fileSize),
          bytesToInflate(MoxReader::Format::ZlibMaxExpansion * fileSize) {}

    void charge(const BlockAttempt& failed) {
        bytesToRead -= std::min(bytesToRead, failed.read);
        bytesToInflate -= std::min(bytesToInflate, failed.inflated);
    }
    bool isUsedUp() const { return bytesToRead == 0 || bytesToInflate == 0; }

private:
    static constexpr std::uint64_t ReadsOfTheFile = 4;

    std::uint64_t bytesToRead;
    std::uint64_t bytesToInflate; ///< Initially all that a file of this size can give.
};

} // namespace MoxTool
