#include "SalvagedBlock.h"

#include <fmt/format.h>

namespace MoxTool {

std::string SalvagedBlock::fileName() const {
    const auto* const mark = isWhole() ? "" : extent.isCutOff() ? ".part" : ".damaged";
    return fmt::format("block-{:04}{}.raw", number, mark);
}

} // namespace MoxTool
