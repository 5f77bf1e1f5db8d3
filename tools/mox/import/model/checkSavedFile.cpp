#include "checkSavedFile.h"

#include "../../common/findFlaw.h"

#include <MoxReader/Model.h>

#include <fmt/core.h>

#include <stdexcept>

namespace MoxTool {

void checkSavedFile(const std::filesystem::path& path) {
    const MoxReader::File file(path);
    if (const auto flaw = findIndexFlaw(file))
        throw std::runtime_error(fmt::format(
            "the saved file is not whole ({}); is the disk full, or a dataset larger than 3 GiB?", *flaw));
    MoxReader::readModel(file);
}

} // namespace MoxTool
