#include "../libraryVersions.h"

namespace MoxTool {

std::string exodusVersion() {
    return "";
}

} // namespace MoxTool
