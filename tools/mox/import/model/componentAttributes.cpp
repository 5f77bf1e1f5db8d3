#include "componentAttributes.h"

#include "../../mesh/AttributeNames.h"

#include <fmt/core.h>

namespace MoxTool {

void tellRenamed(const std::vector<ResultDataset>& results, ConversionSummary& summary) {
    for (const auto& result : results) {
        if (result.name != result.wantedName)
            summary.tell(fmt::format("\"{}\" is named \"{}\", since another dataset has its name",
                                     result.wantedName, result.name));
    }
}

Qel::Mox2::Attributes componentAttributes(const ResultDataset& result,
                                          const std::vector<std::string>& names) {
    Qel::Mox2::Attributes attributes;
    if (result.width == 1 && result.name == result.wantedName)
        return attributes;
    for (std::size_t column = 0; column < result.variables.size(); ++column)
        attributes.set(AttributeNames::numbered(AttributeNames::Component, column + 1),
                       names[result.variables[column]]);
    return attributes;
}

} // namespace MoxTool
