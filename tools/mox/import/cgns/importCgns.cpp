#include "importCgns.h"

#include "../model/saveImported.h"
#include "CgnsFile.h"
#include "CgnsImporter.h"

namespace MoxTool {

ConversionSummary importCgns(const ImportRequest& request, Terminal& terminal) {
    return saveImported(request, "libcgns", terminal, [&](ImportTarget& target) {
        const CgnsFile input(request.input);
        CgnsImporter(input, target).run();
    });
}

} // namespace MoxTool
