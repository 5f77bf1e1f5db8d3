#include "OutputFile.h"

#include "Failure.h"

#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

} // namespace

OutputFile::OutputFile(fs::path target, bool overwrite)
    : target_(std::move(target)), overwrite_(overwrite), temporary_(checkedTarget()) {}

void OutputFile::commit() {
    checkedTarget();
    temporary_.moveToTarget();
}

/// @return the target, if a file may be put there.
const fs::path& OutputFile::checkedTarget() const {
    if (!target_.has_filename()) {
        throw Failure(target_.string(), "names no file");
    }
    if (!fs::is_directory(folderOf(target_))) {
        throw Failure(target_.string(), "the folder does not exist");
    }
    const auto status = fs::status(target_);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Failure(target_.string(), "exists and is no regular file");
    }
    if (fs::exists(status) && !overwrite_) {
        throw Failure(target_.string(), "exists already; --overwrite replaces it");
    }
    return target_;
}

} // namespace MoxTool
