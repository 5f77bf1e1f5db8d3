#include "checkSavedFile.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <stdexcept>

namespace MoxTool {

void checkSavedFile(const std::filesystem::path& path) {
    const MoxReader::File file(path);
    if (file.index().end != file.size())
        throw std::runtime_error("the saved file has not the size that it should have; is the disk full?");
    MoxReader::readModel(file);
}

} // namespace MoxTool
