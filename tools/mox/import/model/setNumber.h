#pragma once

#include <Qel/Mox2/Attributes.h>

#include <cstdint>
#include <limits>
#include <string>

namespace MoxTool {

/// Sets an integer. Attributes can hold 32 bits signed; a larger number becomes a text.
inline void setNumber(Qel::Mox2::Attributes& attributes, const std::string& key, std::int64_t value) {
    if (value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()) {
        attributes.set(key, static_cast<int>(value));
    } else {
        attributes.set(key, std::to_string(value));
    }
}

} // namespace MoxTool
