#include "exportExodus.h"

#include "../../common/OutputFile.h"
#include "../ExportModel.h"
#include "../writeApart.h"
#include "ExodusExporter.h"

namespace MoxTool {

ConversionSummary exportExodus(const ExportRequest& request, Terminal& terminal) {
    OutputFile output(request.output, request.overwrite);
    ExportModel model(request);
    auto summary = writeApart(request, "libexodus", terminal, [&] {
        explainErrors(request.input, [&] {
            ExodusExporter(model, terminal).write(output.temporaryPath().string(), request.output);
        });
        return model.summary();
    });
    output.commit();
    return summary;
}

} // namespace MoxTool
