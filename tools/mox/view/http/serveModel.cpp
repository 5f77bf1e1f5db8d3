#include "serveModel.h"

#include "../../common/Failure.h"
#include "../../common/Platform.h"
#include "../../common/Terminal.h"
#include "../../common/visibleText.h"
#include "ModelServer.h"

#include <fmt/format.h>

namespace MoxTool {

void serveModel(const ModelSelection& selection, bool open, Terminal& terminal) {
    ViewModel model(selection);
    ModelServer server(model, selection.input);
    const auto address = server.bind();
    terminal.note(fmt::format("{}: {} until Ctrl-C", visibleText(selection.input), address));
    if (open) {
        Platform::openOnDesktop(address);
    }
    server.listen();
    throw Failure(selection.input, "is served no more, since the connection was lost");
}

} // namespace MoxTool
