#pragma once

#include <fmt/core.h>

#include <cstdint>
#include <string>

namespace MoxTool {

/// What to call a block or a set: its name, or its kind and id, such as "Block 76".
inline std::string nameOrId(const std::string& name, const std::string& kind, std::int64_t id) {
    return name.empty() ? fmt::format("{} {}", kind, id) : name;
}

} // namespace MoxTool
