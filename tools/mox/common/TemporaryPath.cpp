#include "TemporaryPath.h"

#include "Failure.h"
#include "utf8Path.h"

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

// Whether a unit of UTF-8, or of UTF-16 on Windows, continues a character.
bool isInsideCharacter(fs::path::value_type unit) {
    return sizeof(unit) == 1 ? (static_cast<unsigned>(unit) & 0xC0U) == 0x80U
                             : (static_cast<unsigned>(unit) & 0xFC00U) == 0xDC00U;
}

// Cuts a long name, since most file systems allow no more than 255 bytes. A character is not cut in two.
fs::path::string_type shortened(fs::path::string_type name) {
    constexpr std::size_t MostUnits = 200;
    if (name.size() <= MostUnits) {
        return name;
    }
    auto size = MostUnits;
    while (size > 0 && isInsideCharacter(name[size])) {
        --size;
    }
    name.resize(size);
    return name;
}

fs::path unusedBeside(const fs::path& target) {
    std::random_device random;
    std::error_code error;
    for (;;) {
        fs::path name = shortened(target.filename().native());
        name += fmt::format(".{:08x}.part", random());
        auto candidate = target;
        candidate.replace_filename(name);
        if (!fs::exists(candidate, error)) {
            return candidate;
        }
    }
}

void removeQuietly(const fs::path& path) {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

// Another thread may be filling a folder. Under its other name it takes no further files, but for one that is
// being created just now.
void removeFromOtherThread(const fs::path& path) {
    constexpr int MostAttempts = 100;
    auto hidden = path;
    hidden += ".end";
    std::error_code error;
    fs::rename(path, hidden, error);
    const auto& place = error ? path : hidden;
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        fs::remove_all(place, error);
        if (!error) {
            return;
        }
    }
}

} // namespace

TemporaryPath::TemporaryPath(const fs::path& target) : target_(target), temporary_(unusedBeside(target)) {
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    inUse.paths.insert(temporary_);
}

TemporaryPath::~TemporaryPath() {
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    removeQuietly(temporary_);
    inUse.paths.erase(temporary_);
}

void TemporaryPath::createFolder() const {
    const std::lock_guard lock(pathsInUse().mutex);
    std::error_code error;
    if (!fs::create_directory(temporary_, error)) {
        throw Failure(utf8Of(target_), "can't be made: " + error.message());
    }
}

void TemporaryPath::moveToTarget() const {
    const std::lock_guard lock(pathsInUse().mutex);
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) {
        throw Failure(utf8Of(target_), "can't be written: " + error.message());
    }
}

// The old one's other name becomes a temporary one only when the new one is in place: if the worst happens, it
// is still there.
void TemporaryPath::replaceTarget() const {
    auto& inUse = pathsInUse();
    const std::lock_guard lock(inUse.mutex);
    const auto old = unusedBeside(target_);
    std::error_code error;
    fs::rename(target_, old, error);
    if (error) {
        throw Failure(utf8Of(target_), "can't be replaced: " + error.message());
    }
    fs::rename(temporary_, target_, error);
    if (error) {
        const auto reason = error.message();
        fs::rename(old, target_, error);
        throw Failure(utf8Of(target_), "can't be written: " + reason);
    }
    removeQuietly(old);
}

void TemporaryPath::removeAllForGood() {
    auto& inUse = pathsInUse();
    inUse.mutex.lock(); // for good: the process is about to end
    for (const auto& path : inUse.paths) {
        removeFromOtherThread(path);
    }
}

} // namespace MoxTool
