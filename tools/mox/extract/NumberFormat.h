#pragma once

#include <map>
#include <string>

namespace MoxTool {

/// A form in which the numbers of a dataset are written.
enum class NumberFormat {
    Csv, ///< One line for each item, commas between its components; each number reads back equal.
    Npy, ///< NumPy's array file, version 1.0: `<f4` or `<u4`, of shape (items,) or (items, components).
    Raw, ///< The numbers alone, four bytes each, lowest first, item by item.
};

/// The names of the formats, which are the extensions of their files as well.
inline const std::map<std::string, NumberFormat> NumberFormats = {
    {"csv", NumberFormat::Csv}, {"npy", NumberFormat::Npy}, {"raw", NumberFormat::Raw}};

} // namespace MoxTool
