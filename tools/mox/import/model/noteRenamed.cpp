#include "noteRenamed.h"

#include <fmt/core.h>

namespace MoxTool {

void noteRenamed(const std::vector<ResultDataset>& results, ConversionSummary& summary) {
    for (const auto& result : results) {
        if (result.name != result.wantedName) {
            summary.addNote(fmt::format("\"{}\" is named \"{}\", since another dataset has its name",
                                        result.wantedName, result.name));
        }
    }
}

} // namespace MoxTool
