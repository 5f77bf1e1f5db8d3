#pragma once

#include <MoxReader/Node.h>

#include <string>

namespace MoxTool {

/// The parts of a group's transform and kind that are not the defaults, such as "translation 1 0 0, kind 1";
/// empty if there are none.
std::string differenceText(const MoxReader::Group& group);
/// Likewise for a material. The fourth value of the emissive colour means nothing and is left out.
std::string differenceText(const MoxReader::Material& material);

} // namespace MoxTool
