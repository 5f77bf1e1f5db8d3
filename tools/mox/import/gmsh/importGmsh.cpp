#include "importGmsh.h"

#include "../model/saveImported.h"
#include "GmshImporter.h"
#include "loadGmshModel.h"

namespace MoxTool {

ConversionSummary importGmsh(const ImportRequest& request, Terminal& terminal) {
    const auto input = loadGmshModel(request.input);
    return saveImported(request, terminal, [&](Qel::Mox2::Model& model, ConversionSummary& summary) {
        GmshImporter(request.input, *input, model, terminal, summary).run();
    });
}

} // namespace MoxTool
