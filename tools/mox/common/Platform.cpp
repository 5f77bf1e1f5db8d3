#include "Platform.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <csignal>
#include <thread>
#include <unistd.h>
#endif

#include <utility>

namespace MoxTool::Platform {

#ifdef _WIN32

namespace {

std::function<void()> atInterruption;

BOOL WINAPI interrupt(DWORD) {
    atInterruption();
    return FALSE; // the default follows: the process ends
}

} // namespace

bool isTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

void makeBinary(std::FILE* stream) {
    std::fflush(stream);
    _setmode(_fileno(stream), _O_BINARY);
}

void runAtInterruption(std::function<void()> function) {
    atInterruption = std::move(function);
    SetConsoleCtrlHandler(interrupt, TRUE);
}

#else

namespace {

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t signalsThatEnd() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        if (!isIgnored(signal)) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

} // namespace

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

void makeBinary(std::FILE*) {}

// A signal handler may do next to nothing; a thread that waits for the signal may do anything.
void runAtInterruption(std::function<void()> function) {
    const auto signals = signalsThatEnd();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, run = std::move(function)] {
        int signal = 0;
        sigwait(&signals, &signal);
        run();
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        std::raise(signal);
    }).detach();
}

#endif

} // namespace MoxTool::Platform
