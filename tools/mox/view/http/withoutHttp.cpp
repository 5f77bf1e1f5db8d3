#include "serveModel.h"

#include "../../common/Failure.h"

namespace MoxTool {

void serveModel(const ModelSelection& selection, bool, Terminal&) {
    throw Failure(selection.input, "can't be served: this mox was built without the library cpp-httplib (on "
                                   "Debian libcpp-httplib-dev); without --serve it makes a page");
}

} // namespace MoxTool
