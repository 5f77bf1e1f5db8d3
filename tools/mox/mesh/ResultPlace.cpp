#include "ResultPlace.h"

#include <MoxReader/Format.h>

namespace MoxTool {

ResultPlace resultPlaceOf(const MoxReader::Dataset& dataset) {
    if (MoxReader::Format::isNodalType(dataset.variableType)) {
        return ResultPlace::Nodes;
    }
    return MoxReader::Format::isElementalType(dataset.variableType) ? ResultPlace::Elements
                                                                    : ResultPlace::Nowhere;
}

} // namespace MoxTool
