#include "versionText.h"

#include "libraryVersions.h"

#include <fmt/format.h>

#include <zlib.h>

namespace MoxTool {

namespace {

std::string line(const char* library, const std::string& version) {
    return fmt::format("{:<10} {}\n", library, version.empty() ? "not built in" : version);
}

} // namespace

std::string versionText() {
    return "mox " MOX_VERSION "\n" + line("Exodus II", exodusVersion()) + line("CGNS", cgnsVersion()) +
           line("Gmsh", gmshVersion()) + fmt::format("{:<10} {}", "zlib", zlibVersion());
}

} // namespace MoxTool
