#include "makeBinary.h"

// The one place that depends on the system.
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace MoxTool {

void makeBinary([[maybe_unused]] std::FILE* stream) {
#ifdef _WIN32
    std::fflush(stream);
    _setmode(_fileno(stream), _O_BINARY);
#endif
}

} // namespace MoxTool
