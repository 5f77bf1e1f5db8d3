#include "importGmsh.h"

#include "GmshImporter.h"
#include "loadGmshModel.h"
#include "saveImported.h"

namespace MoxTool {

ImportSummary importGmsh(const ImportRequest& request, Terminal& terminal) {
    const auto input = loadGmshModel(request.input);
    return saveImported(request, terminal, [&](Qel::Mox2::Model& model, ImportSummary& summary) {
        GmshImporter(request.input, *input, model, terminal, summary).run();
    });
}

} // namespace MoxTool
