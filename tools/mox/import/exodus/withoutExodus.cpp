#include "importExodus.h"

#include "../../common/Failure.h"

namespace MoxTool {

ConversionSummary importExodus(const ImportRequest& request, Terminal&) {
    throw Failure(request.input, "can't be read: this mox was built without the Exodus library (exodusII.h, "
                                 "libexoIIv2c, on Debian libexodusii-dev)");
}

} // namespace MoxTool
