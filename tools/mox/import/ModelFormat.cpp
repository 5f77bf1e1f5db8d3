#include "ModelFormat.h"

#include "../common/Failure.h"
#include "../common/checkIsFile.h"
#include "../common/foreignKind.h"

#include <fstream>

namespace MoxTool {

namespace {

std::string readBeginning(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(path, "can't be opened");
    }
    std::string bytes(ForeignSearchLength, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

} // namespace

ModelFormat recogniseFormat(const std::string& path) {
    checkIsFile(path);
    const auto kind = recogniseForeign(readBeginning(path));
    if (!kind) {
        return ModelFormat::Unknown;
    }
    switch (kind->format) {
    case ForeignFormat::Exodus:
        return ModelFormat::Exodus;
    case ForeignFormat::Cgns:
        return ModelFormat::Cgns;
    case ForeignFormat::Gmsh:
        return ModelFormat::Gmsh;
    case ForeignFormat::Other:
        break;
    }
    return ModelFormat::Unknown;
}

} // namespace MoxTool
