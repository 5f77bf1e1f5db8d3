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

OutputFile::OutputFile(fs::path path, bool mayOverwrite)
    : target(std::move(path)), overwrite(mayOverwrite), temporary(checkedTarget()) {}

void OutputFile::commit() {
    checkedTarget();
    temporary.moveToTarget();
}

/// @return the target, if a file may be put there.
const fs::path& OutputFile::checkedTarget() const {
    if (!target.has_filename()) {
        throw Failure(target.string(), "names no file");
    }
    if (!fs::is_directory(folderOf(target))) {
        throw Failure(target.string(), "the folder does not exist");
    }
    const auto status = fs::status(target);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Failure(target.string(), "exists and is no regular file");
    }
    if (fs::exists(status) && !overwrite) {
        throw Failure(target.string(), "exists already; --overwrite replaces it");
    }
    return target;
}

} // namespace MoxTool
