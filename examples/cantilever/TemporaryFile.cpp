#include "TemporaryFile.h"

#include <system_error>
#include <utility>

namespace Cantilever {

TemporaryFile::TemporaryFile(std::filesystem::path finalPath)
    : target_(std::move(finalPath)), temporary_(target_) {
    temporary_ += ".part";
}

TemporaryFile::~TemporaryFile() {
    std::error_code nothingToRemove;
    std::filesystem::remove(temporary_, nothingToRemove);
}

void TemporaryFile::keep() const {
    std::filesystem::rename(temporary_, target_);
}

} // namespace Cantilever
