#include "importExodus.h"

#include "../../exodus/ExodusFile.h"
#include "../model/saveImported.h"
#include "ExodusMeshImporter.h"
#include "ExodusResultImporter.h"
#include "listSkippedExodusContent.h"

namespace MoxTool {

ConversionSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    const ExodusFile input(request.input);
    return saveImported(request, terminal, [&](ImportTarget& target) {
        const auto mesh = ExodusMeshImporter(input, target).run();
        ExodusResultImporter(input, mesh, target).run();
        listSkippedExodusContent(input, target.summary);
    });
}

} // namespace MoxTool
