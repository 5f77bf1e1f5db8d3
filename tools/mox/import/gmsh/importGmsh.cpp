#include "importGmsh.h"

#include "../model/saveImported.h"
#include "GmshImporter.h"
#include "loadGmshModel.h"

namespace MoxTool {

ConversionSummary importGmsh(const ImportRequest& request, Terminal& terminal) {
    const auto input = loadGmshModel(request.input);
    return saveImported(request, terminal,
                        [&](ImportTarget& target) { GmshImporter(request.input, *input, target).run(); });
}

} // namespace MoxTool
