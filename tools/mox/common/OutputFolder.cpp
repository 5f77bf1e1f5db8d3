#include "OutputFolder.h"

#include "Failure.h"

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

// "out/" and "out" name the same folder, but only the second gives another name beside it when extended.
fs::path withoutTrailingSeparator(const fs::path& path) {
    return path.has_filename() ? path : path.parent_path();
}

} // namespace

OutputFolder::OutputFolder(fs::path path)
    : target_(withoutTrailingSeparator(path)), temporary_(checkedTarget()) {
    temporary_.createFolder();
}

void OutputFolder::commit() {
    checkedTarget();
    temporary_.moveToTarget();
}

/// @return the target, if a folder may be made there.
const fs::path& OutputFolder::checkedTarget() const {
    if (fs::exists(target_)) {
        throw Failure(target_.string(), "exists already; give the name of a new folder");
    }
    const auto parent = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
    if (!fs::is_directory(parent)) {
        throw Failure(target_.string(), "the folder that is to hold it does not exist");
    }
    return target_;
}

} // namespace MoxTool
