#include "exportExodus.h"

#include "../../common/OutputFile.h"
#include "../../common/utf8Path.h"
#include "../ExportModel.h"
#include "../writeApart.h"
#include "ExodusExporter.h"

namespace MoxTool {

ConversionSummary exportExodus(const ExportRequest& request, Terminal& terminal) {
    OutputFile output(pathOf(request.output), request.overwrite);
    ExportModel model(request);
    auto summary = writeApart(request, "libexodus", terminal, [&] {
        explainErrors(request.input, [&] {
            ExodusExporter(model, terminal).write(utf8Of(output.temporaryPath()), request.output);
        });
        return model.summary();
    });
    output.commit();
    return summary;
}

} // namespace MoxTool
