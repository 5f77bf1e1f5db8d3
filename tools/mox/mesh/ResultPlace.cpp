#include "ResultPlace.h"

#include "VariableTypes.h"

namespace MoxTool {

ResultPlace resultPlaceOf(const MoxReader::Dataset& dataset) {
    const auto type = dataset.variableType;
    if (type >= VariableTypes::FirstNodal && type <= VariableTypes::LastNodal) {
        return ResultPlace::Nodes;
    }
    const bool isElemental = type >= VariableTypes::FirstElemental && type <= VariableTypes::LastElemental;
    return isElemental ? ResultPlace::Elements : ResultPlace::Nowhere;
}

} // namespace MoxTool
