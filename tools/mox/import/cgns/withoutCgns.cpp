#include "importCgns.h"

#include "../../common/Failure.h"

namespace MoxTool {

ConversionSummary importCgns(const ImportRequest& request, Terminal&) {
    throw Failure(request.input, "can't be read: this mox was built without the CGNS library (cgnslib.h, "
                                 "libcgns, on Debian libcgns-dev and libhdf5-dev)");
}

} // namespace MoxTool
