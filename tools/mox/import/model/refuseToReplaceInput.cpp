#include "refuseToReplaceInput.h"

#include "../../common/Failure.h"
#include "../../common/utf8Path.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace MoxTool {

void refuseToReplaceInput(const ImportRequest& request) {
    const auto isOutput = [&](const std::string& input) {
        std::error_code missing;
        return std::filesystem::equivalent(pathOf(input), pathOf(request.output), missing);
    };
    if (isOutput(request.input) || (request.pieces && std::ranges::any_of(request.pieces->paths, isOutput))) {
        throw Failure(request.output, "is the input itself");
    }
}

} // namespace MoxTool
