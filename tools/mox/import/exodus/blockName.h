#pragma once

#include "../../exodus/ExodusBlock.h"
#include "nameOrId.h"

#include <string>

namespace MoxTool {

/// What to call a block: its name, or a text such as "Block 76".
inline std::string blockName(const ExodusBlock& block) {
    return nameOrId(block.name, "Block", block.id);
}

} // namespace MoxTool
