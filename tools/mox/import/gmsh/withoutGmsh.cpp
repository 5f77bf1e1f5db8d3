#include "importGmsh.h"

#include "../../common/Failure.h"

namespace MoxTool {

ConversionSummary importGmsh(const ImportRequest& request, Terminal&) {
    throw Failure(request.input, "can't be read: this mox was built without the Gmsh library (gmsh.h, "
                                 "libgmsh, on Debian libgmsh-dev)");
}

} // namespace MoxTool
