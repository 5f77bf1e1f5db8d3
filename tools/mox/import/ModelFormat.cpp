#include "ModelFormat.h"

#include "../common/Failure.h"
#include "../common/checkIsFile.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace MoxTool {

namespace {

// How a file of a format begins.
struct Beginning {
    std::string_view bytes;
    ModelFormat format;
};

constexpr Beginning Beginnings[] = {
    {"CDF", ModelFormat::Exodus},
    {"\x89HDF\r\n\x1A\n", ModelFormat::Exodus},
    {"@(#)ADF Database Version", ModelFormat::Cgns},
    {"$MeshFormat", ModelFormat::Gmsh},
    {"$Comments", ModelFormat::Gmsh},
};

// CGNS writes this node before all others, so its name is near the beginning.
constexpr std::string_view CgnsNode = "CGNSLibraryVersion";
constexpr std::size_t CgnsSearchLength = std::size_t{1} << 20;

std::string readBeginning(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(path, "can't be opened");
    }
    std::string bytes(CgnsSearchLength, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

} // namespace

ModelFormat recogniseFormat(const std::string& path) {
    checkIsFile(path);
    const auto start = readBeginning(path);
    const auto* found =
        std::find_if(std::begin(Beginnings), std::end(Beginnings),
                     [&start](const auto& beginning) { return start.starts_with(beginning.bytes); });
    if (found == std::end(Beginnings)) {
        return ModelFormat::Unknown;
    }
    return start.starts_with("\x89HDF") && start.find(CgnsNode) != std::string::npos ? ModelFormat::Cgns
                                                                                     : found->format;
}

} // namespace MoxTool
