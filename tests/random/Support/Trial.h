#pragma once

#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"
#include "random/Support/Call.h"
#include "random/Support/PlainWorld.h"

#include <string>

namespace RandomUse {

class Player;

/// Plays sequences through the library and through the plain model side by side. One after another, each with
/// models of its own and an empty folder.
class Trial {
public:
    /// Plays a sequence, and destroys its models.
    /// @return the first difference and the call that showed it; empty if there is none.
    std::string play(const Sequence& calls);

    /// Leaves calls out of a sequence with a difference for as long as there is still one.
    Sequence shortened(Sequence calls);

private:
    std::string playAll(const Sequence& calls, PlainWorld& world);
    std::string playCall(const Call& call, Player& player, PlainWorld& world);
    std::string compareFile(const std::string& file, const PlainWorld& world) const;
    bool shorten(Sequence& calls, std::size_t count);

    Support::TemporaryFolder folder_;
    std::string path_ = folder_.path(""); // Ends with a slash.
    Support::EnvironmentGuard blockSize_{Support::BlockSizeVariable};
};

} // namespace RandomUse
