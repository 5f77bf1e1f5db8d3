#pragma once

#include "MoxReader/StreamReader.h"

#include <array>
#include <string>

namespace MoxReader {

/// The material of a shape. Colours are red, green, blue, alpha.
struct Material {
    std::string version;             ///< "0.1" to "0.3", or later.
    std::array<float, 4> diffuse{};  ///< The colour in diffuse light.
    std::array<float, 4> specular{}; ///< The colour of highlights.
    std::array<float, 4> emissive{}; ///< The fourth value means nothing and can be any bits.
    std::array<float, 4> ambient{};  ///< The colour in ambient light.
    float transparency = 0;          ///< From 0, opaque, to 1.
    float shininess = 0;             ///< 0 in records of version "0.1", which lack it.
    std::uint8_t flag = 0;           ///< 0 in records of versions "0.1" and "0.2", which lack it.
};

/// Reads one material record. Fields that a later version may append are skipped.
/// @throws Error  BadRecordSize, and those of StreamReader.
Material readMaterial(StreamReader& resources);

} // namespace MoxReader
