#pragma once

#include "random/Support/Call.h"
#include "random/Support/PlainNode.h"

#include <optional>

namespace RandomUse {

/// What a file keeps of these attributes; nothing if one of them is refused.
std::optional<StoredAttributes> storedAttributes(const AttributePairs& pairs);

} // namespace RandomUse
