#include <Qel/Log/Log.h>

#include <utility>

namespace Qel::Log {

namespace {

LogSystem*& currentSystem() {
    static LogSystem system;
    static LogSystem* current = &system;
    return current;
}

} // namespace

LogSystem& processLog() {
    return *currentSystem();
}

LogSystem& replaceProcessLog(LogSystem& replacement) {
    return *std::exchange(currentSystem(), &replacement);
}

} // namespace Qel::Log
