#include "importCgns.h"

#include "../model/saveImported.h"
#include "CgnsFile.h"
#include "CgnsImporter.h"

namespace MoxTool {

ConversionSummary importCgns(const ImportRequest& request, Terminal& terminal) {
    const CgnsFile input(request.input);
    return saveImported(request, terminal, [&](ImportTarget& target) { CgnsImporter(input, target).run(); });
}

} // namespace MoxTool
