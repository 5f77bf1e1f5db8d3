#include "noteRenamed.h"

#include <fmt/core.h>

namespace MoxTool {

void noteRenamed(const std::vector<ResultDataset>& results, ConversionSummary& summary) {
    for (const auto& result : results) {
        if (result.name != result.wantedName) {
            summary.addNote(fmt::format("\"{}\" is named \"{}\", since {}", result.wantedName, result.name,
                                        result.wantedName.find('\x1E') == std::string::npos
                                            ? "another dataset has its name"
                                            : "the byte 0x1E ends a name"));
        }
    }
}

} // namespace MoxTool
