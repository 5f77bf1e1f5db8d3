#include "Platform.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
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

bool isStandardOutput(const std::filesystem::path&) {
    return false;
}

// The runtime gives a missing stream no number that a file could get.
void reserveStandardStreams() {}

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

bool isStandardOutput(const std::filesystem::path& path) {
    struct stat there {};
    struct stat out {};
    return stat(path.c_str(), &there) == 0 && fstat(STDOUT_FILENO, &out) == 0 && there.st_dev == out.st_dev &&
           there.st_ino == out.st_ino;
}

// A file that is opened gets the lowest free number, so the loop fills each gap itself: with something that
// can't be read in place of stdin, and with something that can't be written in place of the other two.
void reserveStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1) {
            (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

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
