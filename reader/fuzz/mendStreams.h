#pragma once

#include "Streams.h"

namespace MoxFuzz {

/// Makes the streams agree where a change of one of them breaks the others: numbers the nodes, links them as their
/// parents say, sets their positions, and gives "Light Data", "Attributes" and "Resources" as many records as the nodes
/// need, so that a reader gets as far as the change. What the records hold stays as it is.
void mendStreams(Streams& streams);

} // namespace MoxFuzz
