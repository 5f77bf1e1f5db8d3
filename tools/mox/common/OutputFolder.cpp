#include "OutputFolder.h"

#include "Failure.h"
#include "followLinks.h"
#include "utf8Path.h"

#include <system_error>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

// "out/" and "out" name the same folder, but only the second gives another name beside it when extended.
fs::path withoutTrailingSeparator(const fs::path& path) {
    return path.has_filename() ? path : path.parent_path();
}

} // namespace

OutputFolder::OutputFolder(fs::path path)
    : target_(followLinks(withoutTrailingSeparator(path))), temporary_(checkedTarget()) {
    temporary_.createFolder();
}

void OutputFolder::commit() {
    checkedTarget();
    temporary_.moveToTarget();
}

/// @return the target, if a folder may be made there.
const fs::path& OutputFolder::checkedTarget() const {
    if (target_ == "-") {
        throw Failure("-", "stdout can't take a folder; name one");
    }
    std::error_code error;
    const auto status = fs::status(target_, error);
    if (status.type() == fs::file_type::none) {
        throw Failure(utf8Of(target_), "can't be made: " + error.message());
    }
    if (fs::exists(status)) {
        throw Failure(utf8Of(target_), "exists already; give the name of a new folder");
    }
    const auto parent = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
    if (!fs::is_directory(parent, error)) {
        throw Failure(utf8Of(target_), "the folder that is to hold it does not exist");
    }
    return target_;
}

} // namespace MoxTool
