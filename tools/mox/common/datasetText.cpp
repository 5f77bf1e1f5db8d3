#include "datasetText.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

namespace MoxTool {

namespace Format = MoxReader::Format;

std::string variableTypeText(const MoxReader::Dataset& dataset) {
    if (const auto* type = Format::findVariableType(dataset.variableType)) {
        return std::string(type->name);
    }
    return fmt::format("type {}", dataset.variableType);
}

std::string elementTypeText(const MoxReader::Dataset& dataset) {
    switch (dataset.elementTag) {
    case Format::FloatTag:
        return "float";
    case Format::UnsignedTag:
        return "unsigned";
    default:
        return fmt::format("element type {}", dataset.elementTag);
    }
}

std::uint32_t itemCount(const MoxReader::Dataset& holder) {
    return holder.width == 0 ? 0 : holder.sizeInBytes / (Format::ElementSize * holder.width);
}

std::string shapeText(const MoxReader::Dataset& holder) {
    return fmt::format("{} x {}", itemCount(holder), holder.width);
}

} // namespace MoxTool
