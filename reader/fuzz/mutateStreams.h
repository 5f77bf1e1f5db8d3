#pragma once

#include "Streams.h"

#include <random>

namespace MoxFuzz {

/// Changes one to four places of the streams, and mostly mends them afterwards.
/// @param room  The most bytes that all contents may have together.
void mutateStreams(Streams& streams, std::size_t room, std::minstd_rand& chance);

/// Takes over one stream of another file, and mostly mends the result.
void crossStreams(Streams& streams, const Streams& other, std::minstd_rand& chance);

} // namespace MoxFuzz
