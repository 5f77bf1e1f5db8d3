#include "columnNames.h"

#include "../common/attributeValue.h"
#include "AttributeNames.h"
#include "DatasetNames.h"

#include <MoxReader/Format.h>

#include <fmt/core.h>

#include <array>

namespace MoxTool {

namespace {

using MoxReader::Format::VariableType;
using Suffixes = std::array<const char*, 6>;

constexpr Suffixes AxisSuffixes = {"_x", "_y", "_z"};
constexpr Suffixes Tensor = {"_xx", "_yy", "_zz", "_xy", "_yz", "_zx"};
constexpr std::array<const char*, 6> DisplacementAndRotation = {
    "Displacement_x", "Displacement_y", "Displacement_z", "Rotation_x", "Rotation_y", "Rotation_z"};

bool hasSix(std::uint32_t variableType, std::size_t width) {
    return width == Tensor.size() && (MoxReader::Format::isType(variableType, VariableType::NodeSixA) ||
                                      MoxReader::Format::isType(variableType, VariableType::ElementSixA));
}

} // namespace

std::vector<std::string> componentNames(const MoxReader::Dataset& holder) {
    std::vector<std::string> names;
    for (;;) {
        auto name = textAttribute(holder.attributes,
                                  AttributeNames::numbered(AttributeNames::Component, names.size() + 1));
        if (name.empty() || names.size() == holder.width) {
            return names;
        }
        names.push_back(std::move(name));
    }
}

std::string guessedColumnName(const std::string& dataset, std::uint32_t variableType, std::size_t width,
                              std::size_t column) {
    if (width == 1) {
        return dataset;
    }
    if (hasSix(variableType, width) && dataset == DatasetNames::Displacement &&
        MoxReader::Format::isNodalType(variableType)) {
        return DisplacementAndRotation.at(column);
    }
    if (width == 3) {
        return dataset + AxisSuffixes.at(column);
    }
    if (hasSix(variableType, width)) {
        return dataset + Tensor.at(column);
    }
    return fmt::format("{}_{}", dataset, column + 1);
}

std::vector<std::string> columnNames(const std::string& dataset, const MoxReader::Dataset& holder) {
    auto names = componentNames(holder);
    while (names.size() < holder.width) {
        names.push_back(guessedColumnName(dataset, holder.variableType, holder.width, names.size()));
    }
    return names;
}

} // namespace MoxTool
