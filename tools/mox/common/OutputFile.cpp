#include "OutputFile.h"

#include "Failure.h"

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

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

} // namespace

OutputFile::OutputFile(fs::path path, bool mayOverwrite) : target(std::move(path)), overwrite(mayOverwrite) {
    if (!target.has_filename())
        throw Failure(target.string(), "names no file");
    if (!fs::is_directory(folderOf(target)))
        throw Failure(target.string(), "the folder does not exist");
    checkTarget();
    temporary = unusedNameBeside(target);
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    fs::remove(temporary, ignored);
}

void OutputFile::commit() {
    checkTarget();
    std::error_code error;
    fs::rename(temporary, target, error);
    if (error)
        throw Failure(target.string(), "can't be written: " + error.message());
}

void OutputFile::checkTarget() const {
    const auto status = fs::status(target);
    if (!fs::exists(status))
        return;
    if (!fs::is_regular_file(status))
        throw Failure(target.string(), "exists and is no regular file");
    if (!overwrite)
        throw Failure(target.string(), "exists already; --overwrite replaces it");
}

} // namespace MoxTool
