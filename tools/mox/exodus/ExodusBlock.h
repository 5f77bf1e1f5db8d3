#pragma once

#include <cstdint>
#include <string>

namespace MoxTool {

/// One element block of an Exodus file.
struct ExodusBlock {
    std::int64_t id = 0;
    std::string name; ///< Empty if the file gives none.
    std::string elementType;
    std::int64_t elementCount = 0;
    std::int64_t nodesPerElement = 0; ///< In an NSIDED block, of all elements together.
    std::int64_t attributeCount = 0;  ///< For each element.
    std::int64_t firstElement = 0;    ///< Elements in the blocks before this one.
};

} // namespace MoxTool
