#include "../libraryVersions.h"

namespace MoxTool {

std::string gmshVersion() {
    return "";
}

} // namespace MoxTool
