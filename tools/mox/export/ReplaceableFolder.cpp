#include "ReplaceableFolder.h"

#include "../Failure.h"

#include <fmt/core.h>

#include <random>
#include <system_error>
#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

fs::path unusedNameBeside(const fs::path& target) {
    std::random_device random;
    for (;;) {
        auto candidate = target;
        candidate += fmt::format(".{:08x}.part", random());
        if (!fs::exists(candidate))
            return candidate;
    }
}

bool holdsOnly(const fs::path& folder, const std::string& extension) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().extension() != extension)
            return false;
    }
    return true;
}

} // namespace

ReplaceableFolder::ReplaceableFolder(fs::path path, std::string extensionOfFiles, bool mayOverwrite)
    : target(std::move(path)), extension(std::move(extensionOfFiles)), overwrite(mayOverwrite) {
    checkTarget();
    temporary = unusedNameBeside(target);
    std::error_code error;
    if (!fs::create_directory(temporary, error))
        throw Failure(target.string(), "can't be made: " + error.message());
}

ReplaceableFolder::~ReplaceableFolder() {
    std::error_code ignored;
    fs::remove_all(temporary, ignored);
}

// The old folder steps aside, so that there is one of the two at all times but for a moment.
void ReplaceableFolder::commit() {
    checkTarget();
    std::error_code error;
    const auto old = unusedNameBeside(target);
    const bool replaces = fs::exists(target);
    if (replaces)
        fs::rename(target, old, error);
    if (!error)
        fs::rename(temporary, target, error);
    if (error)
        throw Failure(target.string(), "can't be written: " + error.message());
    if (replaces)
        fs::remove_all(old, error);
}

void ReplaceableFolder::checkTarget() const {
    const auto status = fs::status(target);
    if (!fs::exists(status))
        return;
    if (!fs::is_directory(status))
        throw Failure(target.string(), "exists and is no folder");
    if (!overwrite)
        throw Failure(target.string(), "exists already; --overwrite replaces it");
    if (!holdsOnly(target, extension))
        throw Failure(
            target.string(),
            fmt::format("holds more than {} files and is not replaced; remove it or choose another name",
                        extension));
}

} // namespace MoxTool
