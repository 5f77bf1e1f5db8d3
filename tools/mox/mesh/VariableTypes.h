#pragma once

#include <cstdint>

/// Numbers of dataset types, which are in MoxReader::Format::VariableTypes without names of their own.
namespace MoxTool::VariableTypes {

inline constexpr std::uint32_t Coordinates = 1;
inline constexpr std::uint32_t FirstConnectivity = 4; ///< For lines; two and three dimensions follow.
inline constexpr std::uint32_t LastConnectivity = 6;
inline constexpr std::uint32_t Polylength = 9;
inline constexpr std::uint32_t FirstNodal = 12;
inline constexpr std::uint32_t NodeSixA = 14;
inline constexpr std::uint32_t LastNodal = 15;
inline constexpr std::uint32_t FirstElemental = 16;
inline constexpr std::uint32_t ElementSixA = 18;
inline constexpr std::uint32_t LastElemental = 19;

} // namespace MoxTool::VariableTypes
