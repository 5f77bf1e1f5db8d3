#include "../libraryVersions.h"

namespace MoxTool {

std::string cgnsVersion() {
    return "";
}

} // namespace MoxTool
