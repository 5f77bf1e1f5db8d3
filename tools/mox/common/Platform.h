#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// Everything that depends on the operating system.
namespace MoxTool::Platform {

/// Whether the stream is a terminal.
bool isTerminal(std::FILE* stream);

/// The characters in a line of the terminal that the stream is; 0 if it is none, or if that is not known.
std::size_t terminalWidth(std::FILE* stream);

/// Makes a console take text in UTF-8, and the sequences for colours, where it does not by itself. It gets its former
/// setting back when the process ends by exit().
void prepareConsole();

/// Makes stdin or stdout pass bytes unchanged on systems that otherwise convert line ends.
void makeBinary(std::FILE* stream);

/// Whether a path leads to what stdout writes to, as /dev/stdout does.
bool isStandardOutput(const std::filesystem::path& path);

/// Makes sure that no file that is opened takes the place of stdin, stdout or stderr if the process was
/// started without one of them: what is written there would go into that file. Using it fails as before.
void reserveStandardStreams();

/// When the process is ended from outside (Ctrl-C, a closed terminal, kill), runs a function in a thread of
/// its own and then lets the process end as it would have without. A kind of end that the process was started
/// to ignore, as under nohup, stays ignored. May be called once, before the process has a second thread.
void runAtInterruption(std::function<void()> function);

/// What became of work that was done apart.
struct ApartOutcome {
    std::optional<std::string> result; ///< What the work has returned; nothing if its process died.
    int signal = 0;                    ///< Why the process died, if that is known.
    bool hasMissedMemory = false;      ///< It died after an allocation had failed at the bound.
    std::uint64_t mostMemory = 0; ///< What the process has used at most, in bytes; 0 if that is not known.

    /// Whether the program ran into a fault of its own, such as a wrong address.
    bool isCrash() const;
    /// Whether it was killed, as systems do that run out of memory.
    bool isKill() const;
    /// The system's name of the signal.
    std::string signalName() const;
};

/// Works that are done apart, each by its place from 0.
struct ApartWorks {
    std::size_t count = 1;
    std::size_t atOnce = 1; ///< The most processes at a time; begun in the order of the works.
    /// Gets the place and the stream of messages to the user, since nothing else that is written to stderr, such as the
    /// last words of a crashed library, reaches them. Throws nothing.
    std::function<std::string(std::size_t, std::FILE*)> work;
    /// Called in this process at the end of a work. @return whether it is done; otherwise it is begun again.
    std::function<bool(std::size_t, const ApartOutcome&)> end;
    /// The memory that each may take, in bytes; 0 for no bound. Not held where the program is built with a sanitizer
    /// that needs far more.
    std::uint64_t mostMemory = 0;
};

/// Does works in processes of their own, so that this one survives a crash of them, and waits for all. What they change
/// in memory is lost. When this process is ended from outside, they are ended before the function given to
/// runAtInterruption() is called. On systems without such processes, or if none can be made, a work is done in this
/// one.
///
/// @throws what `end` throws; the processes that are left have ended by then.
void runApart(const ApartWorks& works);

/// To be called in the work: whether the last call that failed was an allocation. Libraries often report that
/// as something else.
bool hasMissedMemory();

/// From now on only what fails later counts for hasMissedMemory().
void forgetMissedMemory();

/// How the copying of bytes ended.
enum class CopyEnd { Whole, SourceEnded, ReadFailed, WriteFailed };

/// Copies bytes of one file into another. The system does it by itself where it can, which spares the way through
/// this process; elsewhere they are read and written.
/// @param from,to Without a buffer; where they are positioned is left open.
/// @return if a call of the system failed, errno has its reason.
CopyEnd copyBytes(std::FILE* from, std::uint64_t fromOffset, std::FILE* to, std::uint64_t toOffset,
                  std::uint64_t count);

/// The same, always by reading and writing.
CopyEnd copyBytesPlainly(std::FILE* from, std::uint64_t fromOffset, std::FILE* to, std::uint64_t toOffset,
                         std::uint64_t count);

/// Reads bytes at an offset. @return whether all of them are there and could be read.
bool readAt(std::FILE* from, std::uint64_t offset, void* bytes, std::size_t count);

/// Writes bytes at an offset. @return whether it did; if not, errno has the reason.
bool writeAt(std::FILE* to, std::uint64_t offset, const void* bytes, std::size_t count);

/// Sets a variable of the environment of this process; nothing removes it.
void setEnvironment(const std::string& name, const std::optional<std::string>& value);

/// The size of the machine's memory in bytes; 0 if that is not known.
std::uint64_t machineMemory();

/// Has the user's desktop show a file or an address, such as a page in a browser, and does not wait for it.
/// @return false if there is no desktop or nothing there that shows it.
bool openOnDesktop(const std::string& target);

} // namespace MoxTool::Platform
