#include "componentAttributes.h"

#include "../../mesh/AttributeNames.h"

namespace MoxTool {

Qel::Mox2::Attributes componentAttributes(const ResultDataset& result,
                                          const std::vector<std::string>& names) {
    Qel::Mox2::Attributes attributes;
    if (result.width == 1 && result.name == result.wantedName) {
        return attributes;
    }
    for (std::size_t column = 0; column < result.variables.size(); ++column) {
        attributes.set(AttributeNames::numbered(AttributeNames::Component, column + 1),
                       names[result.variables[column]]);
    }
    return attributes;
}

} // namespace MoxTool
