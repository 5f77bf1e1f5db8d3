#include "common/NumberedName.h"
#include "library/open.h"
#include "library/works.h"

#include <string>
#include <vector>

namespace Workloads::Library {

using namespace Qel::Mox2;

namespace {

std::vector<std::string> flatPaths(std::uint64_t count) {
    std::vector<std::string> paths;
    paths.reserve(count);
    NumberedName path("/root/part ");
    for (std::uint64_t i = 0; i < count; ++i) {
        paths.push_back(path(i));
    }
    return paths;
}

// The digits of the number name the groups, so that the depth is the same for every count below a million.
std::vector<std::string> deepPaths(std::uint64_t count) {
    std::vector<std::string> paths;
    paths.reserve(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        std::string path = "/root";
        for (std::uint64_t unit = 100'000; unit >= 10; unit /= 10) {
            path += "/group " + std::to_string(i / unit % (unit < 100'000 ? 10 : count));
        }
        paths.push_back(path + "/part " + std::to_string(i % 10));
    }
    return paths;
}

void merge(const std::vector<std::string>& paths, const std::string& file, Stopwatch& watch) {
    watch.start("first");
    Model model;
    open(model, file);
    model.addAssemblyComponents(paths);
    watch.start("again");
    model.addAssemblyComponents(paths);
    watch.start("close");
    model.close();
}

} // namespace

void mergeFlat(std::uint64_t paths, const std::string& path, Stopwatch& watch) {
    merge(flatPaths(paths), path, watch);
}

void mergeDeep(std::uint64_t paths, const std::string& path, Stopwatch& watch) {
    merge(deepPaths(paths), path, watch);
}

} // namespace Workloads::Library
