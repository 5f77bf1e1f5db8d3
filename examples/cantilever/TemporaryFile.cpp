#include "TemporaryFile.h"

#include <system_error>
#include <utility>

namespace Cantilever {

TemporaryFile::TemporaryFile(std::filesystem::path finalPath)
    : target(std::move(finalPath)), temporary(target) {
    temporary += ".part";
}

TemporaryFile::~TemporaryFile() {
    std::error_code nothingToRemove;
    std::filesystem::remove(temporary, nothingToRemove);
}

void TemporaryFile::keep() const {
    std::filesystem::rename(temporary, target);
}

} // namespace Cantilever
