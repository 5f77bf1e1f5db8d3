#pragma once

#include <string>

/// The keys of the attributes that describe a step, at the datasets of the step.
namespace MoxTool::AttributeNames {

inline constexpr const char* Time = "Time";
inline constexpr const char* Frequency = "Frequency";
inline constexpr const char* Category = "Category";
inline constexpr const char* Mode = "Mode";

/// The attribute beside a float that has its number as the shortest text of a double.
inline std::string exact(const std::string& key) {
    return key + " (exact)";
}

} // namespace MoxTool::AttributeNames
