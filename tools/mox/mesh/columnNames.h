#pragma once

#include <MoxReader/Dataset.h>

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// The names that a dataset gives its columns from the first on, by its attributes "Component 1" and so on;
/// empty if it gives none.
/// @param holder The dataset that holds the numbers.
std::vector<std::string> componentNames(const MoxReader::Dataset& holder);

/// The name of a column that has none: that of its dataset, if there is more than one column with its
/// direction, such as Velocity_x or Stress_xy, or its number from 1.
std::string guessedColumnName(const std::string& dataset, std::uint32_t variableType, std::size_t width,
                              std::size_t column);

/// The names of all columns of a dataset: its own, and guessed ones for the rest.
/// @param dataset Its name, which that of the holder need not be.
std::vector<std::string> columnNames(const std::string& dataset, const MoxReader::Dataset& holder);

} // namespace MoxTool
