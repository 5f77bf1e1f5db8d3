#pragma once

#include "MoxReader/StreamReader.h"

#include <array>
#include <string>

namespace MoxReader {

/// The material of a shape. Colours are red, green, blue, alpha.
struct Material {
    std::string version;
    std::array<float, 4> diffuse{};
    std::array<float, 4> specular{};
    std::array<float, 4> emissive{}; ///< The fourth value means nothing and can be any bits.
    std::array<float, 4> ambient{};
    float transparency = 0;
    float shininess = 0;   ///< 0 in records of version "0.1", which lack it.
    std::uint8_t flag = 0; ///< 0 in records of versions "0.1" and "0.2", which lack it.
};

/// Reads one material record. Fields that a later version may append are skipped.
/// @throws Error  BadRecordSize, and those of StreamReader.
Material readMaterial(StreamReader& resources);

} // namespace MoxReader
