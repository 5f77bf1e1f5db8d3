#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>

/// Everything that depends on the operating system.
namespace MoxTool::Platform {

/// Whether the stream is a terminal.
bool isTerminal(std::FILE* stream);

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

} // namespace MoxTool::Platform
