#include "exportExodus.h"

#include "../../common/OutputFile.h"
#include "../ExportModel.h"
#include "ExodusExporter.h"

namespace MoxTool {

ConversionSummary exportExodus(const ExportRequest& request, Terminal& terminal) {
    OutputFile output(request.output, request.overwrite);
    ExportModel model(request);
    explainErrors(request.input, [&] {
        ExodusExporter(model, terminal).write(output.temporaryPath().string(), request.output);
    });
    output.commit();
    return model.summary();
}

} // namespace MoxTool
