#include "importExodus.h"

#include "../../exodus/ExodusFile.h"
#include "../model/saveImported.h"
#include "ExodusMeshImporter.h"
#include "ExodusResultImporter.h"
#include "listSkippedExodusContent.h"

namespace MoxTool {

ConversionSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    return saveImported(request, "libexodus", terminal, [&](ImportTarget& target) {
        const ExodusFile input(request.input);
        const auto mesh = ExodusMeshImporter(input, target).run();
        target.choices.check(request.input);
        ExodusResultImporter(input, mesh, target).run();
        listSkippedExodusContent(input, target.summary);
    });
}

} // namespace MoxTool
