#include <Qel/Log/Log.h>

#include <utility>

namespace Qel::Log {

namespace {

LogSystem& ownSystem() {
    static LogSystem system;
    return system;
}

LogSystem*& currentSystem() {
    static LogSystem* current = &ownSystem();
    return current;
}

} // namespace

LogSystem& processLog() {
    return *currentSystem();
}

LogSystem& replaceProcessLog(LogSystem& replacement) {
    return *std::exchange(currentSystem(), &replacement);
}

bool hasReceiver() {
    return currentSystem() != &ownSystem();
}

} // namespace Qel::Log
