#pragma once

#include "Support/Thrown.h"

namespace Support {

/// What every call reports of an attribute whose value no file can hold.
inline const Thrown RefusedAttribute = {3, "Invalid arguments", "Qel/Mox2/Helper/Attributes",
                                        "AttributeValueGetter"};

} // namespace Support
