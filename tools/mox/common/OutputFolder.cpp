#include "OutputFolder.h"

#include "../Failure.h"

#include <fmt/format.h>

#include <random>
#include <system_error>
#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

// "out/" and "out" name the same folder; beside the first there is no room for another name.
fs::path withoutTrailingSeparator(const fs::path& path) {
    return path.has_filename() ? path : path.parent_path();
}

fs::path temporaryNameFor(fs::path target) {
    std::random_device random;
    target += fmt::format(".{:08x}{:08x}.part", random(), random());
    return target;
}

} // namespace

OutputFolder::OutputFolder(fs::path path) : target(withoutTrailingSeparator(path)) {
    checkTarget();
    temporary = temporaryNameFor(target);
    std::error_code error;
    if (!fs::create_directory(temporary, error))
        throw Failure(target.string(), "can't be made: " + error.message());
}

OutputFolder::~OutputFolder() {
    std::error_code ignored;
    fs::remove_all(temporary, ignored);
}

void OutputFolder::commit() {
    checkTarget();
    std::error_code error;
    fs::rename(temporary, target, error);
    if (error)
        throw Failure(target.string(), "can't be written: " + error.message());
}

void OutputFolder::checkTarget() const {
    if (fs::exists(target))
        throw Failure(target.string(), "exists already; give the name of a new folder");
    const auto parent = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(parent))
        throw Failure(target.string(), "the folder that is to hold it does not exist");
}

} // namespace MoxTool
