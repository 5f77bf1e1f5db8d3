#include "MoxReader/Material.h"

#include "MoxReader/ReadHelpers.h"
#include "MoxReader/VersionedRecord.h"

namespace MoxReader {

Material readMaterial(StreamReader& resources) {
    VersionedRecord record(resources);
    const bool hasShininess = record.version() != Format::MaterialVersionWithoutShininess;
    const bool hasFlag = hasShininess && record.version() != Format::MaterialVersionWithoutFlag;
    Material material;
    material.version = record.version();
    material.diffuse = readFloatArray<4>(resources);
    material.specular = readFloatArray<4>(resources);
    material.emissive = readFloatArray<4>(resources);
    material.ambient = readFloatArray<4>(resources);
    material.transparency = resources.readNumber<float>();
    if (hasShininess) {
        material.shininess = resources.readNumber<float>();
    }
    if (hasFlag) {
        material.flag = resources.readNumber<std::uint8_t>();
    }
    record.finish();
    return material;
}

} // namespace MoxReader
