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
        : bytesToRead_(ReadsOfTheFile * fileSize),
          bytesToInflate_(MoxReader::Format::ZlibMaxExpansion * fileSize) {}

    void charge(const BlockAttempt& failed) {
        bytesToRead_ -= std::min(bytesToRead_, failed.read);
        bytesToInflate_ -= std::min(bytesToInflate_, failed.inflated);
    }
    bool isUsedUp() const { return bytesToRead_ == 0 || bytesToInflate_ == 0; }

private:
    static constexpr std::uint64_t ReadsOfTheFile = 4;

    std::uint64_t bytesToRead_;
    std::uint64_t bytesToInflate_; ///< Initially all that a file of this size can give.
};

} // namespace MoxTool
