#include "ReplaceableFolder.h"

#include "../../common/Failure.h"

#include <fmt/core.h>

#include <system_error>
#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

bool holdsOnly(const fs::path& folder, const std::string& extension) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().extension() != extension) {
            return false;
        }
    }
    return true;
}

} // namespace

ReplaceableFolder::ReplaceableFolder(fs::path path, std::string extensionOfFiles, bool mayOverwrite)
    : target(std::move(path)),
      extension(std::move(extensionOfFiles)),
      overwrite(mayOverwrite),
      temporary(checkedTarget()) {
    temporary.createFolder();
}

// The old folder is renamed first, so that one of the two exists at all times except for a moment. Its other
// name is not a temporary one: if the worst happens, it is still there.
void ReplaceableFolder::commit() {
    checkedTarget();
    if (!fs::exists(target)) {
        temporary.moveToTarget();
        return;
    }
    const auto old = TemporaryPath::unusedBeside(target);
    std::error_code error;
    fs::rename(target, old, error);
    if (error) {
        throw Failure(target.string(), "can't be replaced: " + error.message());
    }
    try {
        temporary.moveToTarget();
    } catch (const Failure&) {
        fs::rename(old, target, error);
        throw;
    }
    fs::remove_all(old, error);
}

/// @return the target, if the folder may be put there.
const fs::path& ReplaceableFolder::checkedTarget() const {
    const auto status = fs::status(target);
    if (!fs::exists(status)) {
        return target;
    }
    if (!fs::is_directory(status)) {
        throw Failure(target.string(), "exists and is no folder");
    }
    if (!overwrite) {
        throw Failure(target.string(), "exists already; --overwrite replaces it");
    }
    if (!holdsOnly(target, extension)) {
        throw Failure(
            target.string(),
            fmt::format("holds more than {} files and is not replaced; remove it or choose another name",
                        extension));
    }
    return target;
}

} // namespace MoxTool
