#include "TemporaryPath.h"

#include "Failure.h"

#include <fmt/core.h>

#include <mutex>
#include <random>
#include <set>
#include <system_error>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

struct PathsInUse {
    std::mutex mutex;
    std::set<fs::path> paths;
};

// Never destroyed, since an interruption can come while the process ends.
PathsInUse& pathsInUse() {
    static auto& instance = *new PathsInUse;
    return instance;
}

void removeQuietly(const fs::path& path) {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

} // namespace

TemporaryPath::TemporaryPath(const fs::path& target) : target_(target), temporary_(unusedBeside(target)) {
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    inUse.paths.insert(temporary_);
}

TemporaryPath::~TemporaryPath() {
    removeQuietly(temporary_);
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    inUse.paths.erase(temporary_);
}

void TemporaryPath::createFolder() const {
    std::error_code error;
    if (!fs::create_directory(temporary_, error)) {
        throw Failure(target_.string(), "can't be made: " + error.message());
    }
}

void TemporaryPath::moveToTarget() const {
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) {
        throw Failure(target_.string(), "can't be written: " + error.message());
    }
}

fs::path TemporaryPath::unusedBeside(const fs::path& target) {
    std::random_device random;
    for (;;) {
        auto candidate = target;
        candidate += fmt::format(".{:08x}.part", random());
        if (!fs::exists(candidate)) {
            return candidate;
        }
    }
}

void TemporaryPath::removeAll() {
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    for (const auto& path : inUse.paths) {
        removeQuietly(path);
    }
}

} // namespace MoxTool
