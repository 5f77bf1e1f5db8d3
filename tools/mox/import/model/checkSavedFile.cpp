#include "checkSavedFile.h"

#include "../../common/displacementText.h"
#include "../../common/findFlaw.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/Model.h>

#include <fmt/core.h>

#include <memory>
#include <stdexcept>

namespace MoxTool {

void checkSavedFile(const std::filesystem::path& path) {
    const auto source = std::make_shared<MoxReader::FileSource>(path);
    if (const auto text = displacementText(MoxReader::scanIndex(*source))) {
        throw std::runtime_error(fmt::format(
            "it was {}; set MOXWRITER_DEFAULT_BLOCK_SIZE, in bytes, above the largest dataset", *text));
    }
    const MoxReader::File file(source);
    if (const auto flaw = findIndexFlaw(file)) {
        throw std::runtime_error(fmt::format(
            "the saved file is not whole ({}); is the disk full, or a dataset larger than 3 GiB?", *flaw));
    }
    if (const auto flaw = findUnwrittenBlock(file)) {
        throw std::runtime_error(fmt::format("the saved file is not whole ({}); is the disk full?", *flaw));
    }
    MoxReader::readModel(file);
}

} // namespace MoxTool
