#include "pageSource.h"

namespace MoxTool {

PageSource pageSource() {
    return {};
}

} // namespace MoxTool
