#include "importGmsh.h"

#include "../model/saveImported.h"
#include "GmshImporter.h"
#include "loadGmshModel.h"

namespace MoxTool {

ConversionSummary importGmsh(const ImportRequest& request, Terminal& terminal) {
    return saveImported(request, "libgmsh", terminal, [&](ImportTarget& target) {
        const auto input = loadGmshModel(request.input);
        GmshImporter(request.input, *input, target).run();
    });
}

} // namespace MoxTool
