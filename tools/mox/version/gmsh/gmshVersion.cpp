#include "../libraryVersions.h"

namespace MoxTool {

// From the header alone, since the library takes long to load.
std::string gmshVersion() {
    return MOX_GMSH_VERSION;
}

} // namespace MoxTool
