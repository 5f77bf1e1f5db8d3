#include "saveImported.h"

#include "../../common/OutputFile.h"
#include "../../common/utf8Path.h"
#include "refuseToReplaceInput.h"
#include "reviewOutput.h"

namespace MoxTool {

ConversionSummary saveImported(const ImportRequest& request, const std::string& library, Terminal& terminal,
                               const ModelFiller& fill) {
    refuseToReplaceInput(request);
    OutputFile output(pathOf(request.output), request.overwrite);
    const auto path = utf8Of(output.temporaryPath());
    auto saved = saveApart({{path, request, fill}}, 1, library, terminal).front();
    for (const auto& sentence : saved.narrowing.report()) {
        saved.summary.addNote(sentence);
    }
    reviewOutput(path, request, terminal);
    output.commit();
    return saved.summary;
}

} // namespace MoxTool
