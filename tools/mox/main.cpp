#include "Application.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"
#include "common/Terminal.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

constexpr const char* NoMemory = "not enough memory";
const std::terminate_handler usualEnd = std::get_terminate();

// Takes no memory, since a lack of it is what may have led here.
int cannotStart(const char* reason) {
    (void)std::fputs("mox: ", stderr);
    (void)std::fputs(reason, stderr);
    (void)std::fputs("\n", stderr);
    return MoxTool::Application::CannotStart;
}

void removeTemporaryFiles() {
    try {
        MoxTool::TemporaryPath::removeAllForGood();
    } catch (const std::bad_alloc&) { // they stay, under names that show what they are
    }
}

// The library for the command line allocates in functions that promise not to throw.
[[noreturn]] void endWithoutMemory() {
    try {
        if (const auto exception = std::current_exception()) {
            std::rethrow_exception(exception);
        }
    } catch (const std::bad_alloc&) {
        removeTemporaryFiles();
        std::_Exit(cannotStart(NoMemory));
    } catch (...) { // is not for here
    }
    usualEnd();
    std::abort();
}

} // namespace

int main(int argc, char** argv) try {
    std::set_terminate(endWithoutMemory);
    MoxTool::Platform::reserveStandardStreams();
    MoxTool::Platform::prepareConsole();
    MoxTool::Platform::makeBinary(stdout); // what is printed is the same on every system
    MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
} catch (const std::bad_alloc&) {
    return cannotStart(NoMemory);
} catch (const std::exception& failure) {
    return cannotStart(failure.what());
}
