#include "common/Stopwatch.h"

#include "common/process.h"

namespace Workloads {

namespace {

Usage difference(const Usage& end, const Usage& begin) {
    Usage result{.wall = end.wall - begin.wall,
                 .cpu = end.cpu - begin.cpu,
                 .user = end.user - begin.user,
                 .system = end.system - begin.system,
                 .compress = std::nullopt};
    if (end.compress && begin.compress) {
        result.compress = *end.compress - *begin.compress;
    }
    return result;
}

} // namespace

void Stopwatch::start(const std::string& phase) {
    stop();
    name_ = phase;
    begin_ = usageOfProcess();
}

void Stopwatch::stop() {
    if (begin_) {
        phases_.push_back({name_, difference(usageOfProcess(), *begin_)});
        begin_.reset();
    }
}

} // namespace Workloads
