#include "importExodus.h"

#include "../../exodus/ExodusFile.h"
#include "../model/FloatNarrowing.h"
#include "../model/saveImported.h"
#include "ExodusMeshImporter.h"
#include "ExodusResultImporter.h"
#include "listSkippedExodusContent.h"

namespace MoxTool {

ConversionSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    const ExodusFile input(request.input);
    return saveImported(request, terminal, [&](Qel::Mox2::Model& model, ConversionSummary& summary) {
        FloatNarrowing narrowing;
        const auto mesh = MeshImporter(input, model, narrowing, summary).run();
        ResultImporter(input, mesh, DatasetWriter(model, summary), narrowing, terminal, summary).run();
        leaveTheRest(input, summary);
        for (const auto& sentence : narrowing.report())
            summary.tell(sentence);
    });
}

} // namespace MoxTool
