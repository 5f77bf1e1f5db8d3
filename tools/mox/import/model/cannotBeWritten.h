#pragma once

#include "../../common/Failure.h"
#include "../ImportRequest.h"

#include <string>

namespace MoxTool {

/// The failure of an import whose output can't be written.
inline Failure cannotBeWritten(const ImportRequest& request, const std::string& reason) {
    return {request.output, "can't be written: " + reason};
}

} // namespace MoxTool
