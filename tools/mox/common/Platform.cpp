#include "Platform.h"

#include "utf8Path.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <shellapi.h>
#else
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MOX_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MOX_SANITIZED
#endif

namespace MoxTool::Platform {

namespace {

bool seekTo(std::FILE* stream, std::uint64_t offset) {
#ifdef _WIN32
    return _fseeki64(stream, static_cast<long long>(offset), SEEK_SET) == 0;
#else
    return fseeko(stream, static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
}

void runHere(const ApartWorks& works, std::size_t place) {
    while (!works.end(place, {works.work(place, stderr)})) {
    }
}

} // namespace

CopyEnd copyBytesPlainly(std::FILE* from, std::uint64_t fromOffset, std::FILE* to, std::uint64_t toOffset,
                         std::uint64_t count) {
    if (count == 0) {
        return CopyEnd::Whole;
    }
    if (!seekTo(from, fromOffset)) {
        return CopyEnd::ReadFailed;
    }
    constexpr std::uint64_t PieceSize = std::uint64_t{1} << 20U;
    std::vector<char> piece(static_cast<std::size_t>(std::min(count, PieceSize)));
    while (count > 0) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(count, piece.size()));
        if (std::fread(piece.data(), 1, size, from) != size) {
            return std::ferror(from) != 0 ? CopyEnd::ReadFailed : CopyEnd::SourceEnded;
        }
        if (!writeAt(to, toOffset, piece.data(), size)) {
            return CopyEnd::WriteFailed;
        }
        toOffset += size;
        count -= size;
    }
    return CopyEnd::Whole;
}

bool hasMissedMemory() {
    return errno == ENOMEM;
}

void forgetMissedMemory() {
    errno = 0;
}

bool readAt(std::FILE* from, std::uint64_t offset, void* bytes, std::size_t count) {
    return seekTo(from, offset) && std::fread(bytes, 1, count, from) == count;
}

bool writeAt(std::FILE* to, std::uint64_t offset, const void* bytes, std::size_t count) {
    return seekTo(to, offset) && std::fwrite(bytes, 1, count, to) == count;
}

#ifdef _WIN32

namespace {

std::function<void()> atInterruption;

// Windows removes no file that is open, and other threads may be writing. The handles are closed below the C
// runtime, where no thread holds a lock; whatever else is written fails.
void closeDiskFiles() {
    constexpr int FirstOther = 3;
    constexpr int MostFiles = 2048; // that the runtime can have open
    for (int number = FirstOther; number < MostFiles; ++number) {
        const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(number));
        if (handle != INVALID_HANDLE_VALUE && GetFileType(handle) == FILE_TYPE_DISK) {
            CloseHandle(handle);
        }
    }
}

BOOL WINAPI interrupt(DWORD) {
    closeDiskFiles();
    atInterruption();
    return FALSE; // the default follows: the process ends
}

} // namespace

bool isTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

std::size_t terminalWidth(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO info;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    const bool isKnown = isTerminal(stream) && GetConsoleScreenBufferInfo(handle, &info) != 0;
    return isKnown ? static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1) : 0;
}

// The console may be older than this program and may outlive it, so it gets back what it had.
void prepareConsole() {
    static const UINT before = GetConsoleOutputCP(); // 0 without a console
    if (before != 0 && SetConsoleOutputCP(CP_UTF8) != 0) {
        std::atexit([] { SetConsoleOutputCP(before); });
    }
    for (const auto number : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const auto handle = GetStdHandle(number);
        DWORD mode = 0;
        if (GetConsoleMode(handle, &mode) != 0) {
            SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        }
    }
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

bool ApartOutcome::isCrash() const {
    return false;
}

bool ApartOutcome::isKill() const {
    return false;
}

std::string ApartOutcome::signalName() const {
    return "";
}

void runApart(const ApartWorks& works) {
    for (std::size_t place = 0; place < works.count; ++place) {
        runHere(works, place);
    }
}

CopyEnd copyBytes(std::FILE* from, std::uint64_t fromOffset, std::FILE* to, std::uint64_t toOffset,
                  std::uint64_t count) {
    return copyBytesPlainly(from, fromOffset, to, toOffset, count);
}

void setEnvironment(const std::string& name, const std::optional<std::string>& value) {
    _putenv_s(name.c_str(), value.value_or("").c_str());
}

std::uint64_t machineMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    return GlobalMemoryStatusEx(&status) != 0 ? status.ullTotalPhys : 0;
}

bool openOnDesktop(const std::string& target) {
    constexpr INT_PTR LastError = 32;
    const auto outcome =
        ShellExecuteW(nullptr, L"open", pathOf(target).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(outcome) > LastError;
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

// The processes that do work apart. Never destroyed, since an interruption can come while this process ends.
struct Children {
    std::mutex mutex;
    std::vector<pid_t> ids;
};

Children& children() {
    static auto& instance = *new Children;
    return instance;
}

// Leaves the ended process to be asked for its status.
void waitForEnd(pid_t id) {
    siginfo_t ignored{};
    while (waitid(P_PID, static_cast<id_t>(id), &ignored, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
}

// The mutex stays locked, so that the thread that waits for the children does not take this for a crash.
void endChildren() {
    children().mutex.lock();
    for (const auto id : children().ids) {
        kill(id, SIGKILL);
    }
    for (const auto id : children().ids) {
        waitForEnd(id);
    }
}

struct End {
    int status = 0;
    rusage used{};
};

// Nothing if it is lost, as where a parent of this process ignores the ends of children.
std::optional<End> takeEnd(pid_t id) {
    waitForEnd(id);
    const std::lock_guard lock(children().mutex);
    std::erase(children().ids, id);
    End end;
    return wait4(id, &end.status, 0, &end.used) == id ? std::optional(end) : std::nullopt;
}

std::uint64_t mostMemoryOf(const rusage& used) {
#ifdef __APPLE__
    constexpr std::uint64_t Unit = 1;
#else
    constexpr std::uint64_t Unit = 1024;
#endif
    return static_cast<std::uint64_t>(used.ru_maxrss) * Unit;
}

// Its first parameter is an enumeration on some systems.
template <typename Resource>
void limit(Resource resource, rlim_t most) {
    rlimit current{};
    if (getrlimit(resource, &current) == 0) {
        current.rlim_cur = std::min(current.rlim_cur, most);
        setrlimit(resource, &current);
    }
}

// In the child: what reaches stderr is dropped, and the returned stream takes its place. With a sanitizer, its
// reports are kept.
std::FILE* setMessagesApart() {
#ifdef MOX_SANITIZED
    return stderr;
#else
    const int messages = dup(STDERR_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    std::FILE* stream = messages < 0 || nowhere < 0 ? nullptr : fdopen(messages, "w");
    if (stream == nullptr) {
        return stderr;
    }
    dup2(nowhere, STDERR_FILENO);
    std::setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
#endif
}

constexpr std::array Faults = {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGTRAP, SIGSYS};

// The exit code of a child that dies after an allocation has failed.
constexpr int MissedMemory = 113;

#ifndef MOX_SANITIZED
// A library that does not look at what it gets runs into a fault by using the null pointer.
void endAtFault(int signal) {
    if (errno == ENOMEM) {
        _exit(MissedMemory);
    }
    std::raise(signal);
}

// Each fault reaches its handler once, so that a second one ends the process as it would have without.
void watchFaults() {
    struct sigaction action {};
    action.sa_handler = endAtFault;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (const int fault : Faults) {
        sigaction(fault, &action, nullptr);
    }
    errno = 0;
}
#endif

void setLimits(std::uint64_t mostMemory) {
    limit(RLIMIT_CORE, 0);
#ifndef MOX_SANITIZED
    if (mostMemory != 0) {
        limit(RLIMIT_AS, static_cast<rlim_t>(mostMemory));
        watchFaults();
    }
#else
    (void)mostMemory;
#endif
}

bool writeAll(int target, const char* bytes, std::size_t size) {
    while (size > 0) {
        const auto written = write(target, bytes, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        const auto done = static_cast<std::size_t>(std::max<ssize_t>(written, 0));
        bytes += done;
        size -= done;
    }
    return true;
}

// The child itself. The parent ends it when the user ends the parent; on Linux the system does so as well.
[[noreturn]] void live(int result, const ApartWorks& works, std::size_t place) {
    const auto signals = signalsThatEnd();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    setLimits(works.mostMemory);
    const auto bytes = works.work(place, setMessagesApart());
    const std::uint64_t size = bytes.size();
    const bool isWritten = writeAll(result, reinterpret_cast<const char*>(&size), sizeof(size)) &&
                           writeAll(result, bytes.data(), bytes.size());
    std::fflush(nullptr);
    _exit(isWritten ? 0 : 1);
}

// What the child has written, if it is whole.
std::optional<std::string> resultIn(const std::string& bytes) {
    std::uint64_t size = 0;
    if (bytes.size() < sizeof(size)) {
        return std::nullopt;
    }
    std::memcpy(&size, bytes.data(), sizeof(size));
    return bytes.size() - sizeof(size) == size ? std::optional(bytes.substr(sizeof(size))) : std::nullopt;
}

// The processes of some works. Those that still run when it is destroyed are ended.
class ApartRun {
public:
    explicit ApartRun(const ApartWorks& works) : works_(works) {}
    ApartRun(const ApartRun&) = delete;
    ApartRun& operator=(const ApartRun&) = delete;
    ~ApartRun() {
        for (const auto& process : running_) {
            kill(process.id, SIGKILL);
        }
        for (const auto& process : running_) {
            close(process.source);
            (void)takeEnd(process.id);
        }
    }

    void run() {
        for (std::size_t next = 0; next < works_.count || !running_.empty();) {
            while (next < works_.count && running_.size() < std::max<std::size_t>(works_.atOnce, 1)) {
                begin(next++);
            }
            readFromAny();
        }
    }

private:
    struct Process {
        std::size_t place;
        pid_t id;
        int source;
        std::string bytes = {};
    };

    // Everything buffered is written before, since the child would write its copy as well.
    void begin(std::size_t place) {
        std::array<int, 2> ends{};
        std::fflush(nullptr);
        running_.reserve(running_.size() + 1);
        if (pipe(ends.data()) != 0) {
            runHere(works_, place);
            return;
        }
        const auto [source, target] = ends;
        std::unique_lock lock(children().mutex);
        children().ids.reserve(children().ids.size() + 1); // once the process is there, it has to be known
        const auto id = fork();
        if (id == 0) {
            close(source);
            live(target, works_, place);
        }
        if (id > 0) {
            children().ids.push_back(id);
        }
        lock.unlock();
        close(target);
        if (id < 0) {
            close(source);
            runHere(works_, place);
            return;
        }
        running_.push_back({place, id, source});
    }

    void readFromAny() {
        std::vector<pollfd> sources;
        for (const auto& process : running_) {
            sources.push_back({process.source, POLLIN, 0});
        }
        if (poll(sources.data(), static_cast<nfds_t>(sources.size()), -1) <= 0) {
            return;
        }
        for (auto i = sources.size(); i-- > 0;) {
            if (sources[i].revents != 0 && !readSome(running_[i])) {
                finish(i);
            }
        }
    }

    // Returns false at the end.
    static bool readSome(Process& process) {
        std::array<char, 65536> piece{};
        const auto count = read(process.source, piece.data(), piece.size());
        process.bytes.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return count > 0 || (count < 0 && errno == EINTR);
    }

    void finish(std::size_t index) {
        const auto process = std::move(running_[index]);
        running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(index));
        close(process.source);
        if (!works_.end(process.place, outcomeOf(process))) {
            begin(process.place);
        }
    }

    static ApartOutcome outcomeOf(const Process& process) {
        const auto end = takeEnd(process.id);
        if (!end) {
            return {resultIn(process.bytes)};
        }
        ApartOutcome outcome;
        outcome.mostMemory = mostMemoryOf(end->used);
        if (WIFSIGNALED(end->status)) {
            outcome.signal = WTERMSIG(end->status);
        } else if (WEXITSTATUS(end->status) == 0) {
            outcome.result = resultIn(process.bytes);
        }
        outcome.hasMissedMemory = WIFEXITED(end->status) && WEXITSTATUS(end->status) == MissedMemory;
        return outcome;
    }

    const ApartWorks& works_;
    std::vector<Process> running_;
};

} // namespace

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

std::size_t terminalWidth(std::FILE* stream) {
    struct winsize size {};
    return isTerminal(stream) && ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void prepareConsole() {}

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
        endChildren();
        run();
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        std::raise(signal);
    }).detach();
}

bool ApartOutcome::isCrash() const {
    return signal == 0 || std::find(Faults.begin(), Faults.end(), signal) != Faults.end();
}

bool ApartOutcome::isKill() const {
    return signal == SIGKILL;
}

std::string ApartOutcome::signalName() const {
    return strsignal(signal);
}

void runApart(const ApartWorks& works) {
    ApartRun(works).run();
}

// What the system copied before it refused is not copied again: on some systems each piece can be refused, and on
// some it never does this at all between two file systems, or for these two files.
CopyEnd copyBytes(std::FILE* from, std::uint64_t fromOffset, std::FILE* to, std::uint64_t toOffset,
                  std::uint64_t count) {
#ifdef __linux__
    constexpr std::uint64_t MostAtOnce = std::uint64_t{1} << 30U;
    auto source = static_cast<off_t>(fromOffset);
    auto target = static_cast<off_t>(toOffset);
    const auto end = fromOffset + count;
    while (static_cast<std::uint64_t>(source) < end) {
        const auto piece =
            static_cast<std::size_t>(std::min(end - static_cast<std::uint64_t>(source), MostAtOnce));
        const auto copied = copy_file_range(fileno(from), &source, fileno(to), &target, piece, 0);
        if (copied == 0 || (copied < 0 && errno != EINTR)) {
            break;
        }
    }
    const auto done = static_cast<std::uint64_t>(source) - fromOffset;
#else
    constexpr std::uint64_t done = 0;
#endif
    return copyBytesPlainly(from, fromOffset + done, to, toOffset + done, count - done);
}

void setEnvironment(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

std::uint64_t machineMemory() {
    const auto pages = sysconf(_SC_PHYS_PAGES);
    const auto size = sysconf(_SC_PAGE_SIZE);
    return pages > 0 && size > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size) : 0;
}

bool openOnDesktop(const std::string& target) {
#ifdef __APPLE__
    const char* program = "open";
#else
    const char* program = "xdg-open";
    const auto isSet = [](const char* name) {
        const auto* value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        return false;
    }
#endif
    // What a browser prints concerns nobody here, and it must not inherit that signals are blocked.
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const std::string name = program;
    std::string argument = target;
    std::array<char*, 3> arguments = {const_cast<char*>(name.c_str()), argument.data(), nullptr};
    pid_t id = 0;
    const int error = posix_spawnp(&id, program, &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0;
}

#endif

} // namespace MoxTool::Platform
