#include "exportExodus.h"

#include "../../common/Failure.h"

namespace MoxTool {

ConversionSummary exportExodus(const ExportRequest& request, Terminal&) {
    throw Failure(request.output,
                  "can't be written: this mox was built without the Exodus library (exodusII.h, "
                  "libexoIIv2c, on Debian libexodusii-dev); .vtu and .pvd can be");
}

} // namespace MoxTool
