#include "noteUnknownShapes.h"

#include <fmt/core.h>

namespace MoxTool {

void noteUnknownShapes(ConversionSummary& summary, std::size_t blocks, const std::string& written) {
    if (blocks > 0) {
        summary.addNote(fmt::format("elements of no known shape {}: {} block{}", written, blocks,
                                    blocks == 1 ? "" : "s"));
    }
}

} // namespace MoxTool
