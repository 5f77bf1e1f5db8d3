#pragma once

#include <MoxReader/Node.h>

#include <string>

namespace MoxTool {

/// What of a group's transform and kind is not the default, such as "translation 1 0 0, kind 1"; empty if
/// nothing.
std::string differenceText(const MoxReader::Group& group);
/// Likewise for a material. The fourth value of the emissive colour means nothing and is left out.
std::string differenceText(const MoxReader::Material& material);

} // namespace MoxTool
