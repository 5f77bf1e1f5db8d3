#pragma once

#include "Streams.h"

#include <optional>
#include <random>

namespace MoxFuzz {

/// The streams of a whole file, as far as they can be read.
/// @return nothing if the front of the file is damaged, or the index is longer than the head index.
std::optional<Streams> unpack(ByteSpan file);

/// A whole file of these streams. Chance decides whether a stream has one block or two, whether they are compressed,
/// and at which level.
Bytes pack(const Streams& streams, std::minstd_rand& chance);

} // namespace MoxFuzz
