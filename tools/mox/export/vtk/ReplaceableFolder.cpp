#include "ReplaceableFolder.h"

#include "../../common/Failure.h"
#include "../../common/followLinks.h"
#include "../../common/utf8Path.h"

#include <fmt/core.h>

#include <system_error>
#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

bool holdsOnly(const fs::path& folder, const std::string& extension) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().extension() != pathOf(extension)) {
            return false;
        }
    }
    return true;
}

} // namespace

ReplaceableFolder::ReplaceableFolder(fs::path target, std::string extension, bool overwrite)
    : target_(followLinks(std::move(target))),
      extension_(std::move(extension)),
      overwrite_(overwrite),
      temporary_(checkedTarget()) {
    temporary_.createFolder();
}

void ReplaceableFolder::commit() {
    checkedTarget();
    if (fs::exists(target_)) {
        temporary_.replaceTarget();
    } else {
        temporary_.moveToTarget();
    }
}

/// @return the target, if the folder may be put there.
const fs::path& ReplaceableFolder::checkedTarget() const {
    std::error_code error;
    const auto status = fs::status(target_, error);
    if (status.type() == fs::file_type::none) {
        throw Failure(utf8Of(target_), "can't be made: " + error.message());
    }
    if (!fs::exists(status)) {
        return target_;
    }
    if (!fs::is_directory(status)) {
        throw Failure(utf8Of(target_), "exists and is no folder");
    }
    if (!overwrite_) {
        throw Failure(utf8Of(target_), "exists already; --overwrite replaces it");
    }
    if (!holdsOnly(target_, extension_)) {
        throw Failure(
            utf8Of(target_),
            fmt::format("holds more than {} files and is not replaced; remove it or choose another name",
                        extension_));
    }
    return target_;
}

} // namespace MoxTool
