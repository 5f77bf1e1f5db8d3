#pragma once

#include <cstdio>
#include <functional>

/// Everything that depends on the operating system.
namespace MoxTool::Platform {

/// Whether the stream is a terminal.
bool isTerminal(std::FILE* stream);

/// Makes stdin or stdout pass bytes unchanged on systems that otherwise convert line ends.
void makeBinary(std::FILE* stream);

/// When the process is ended from outside (Ctrl-C, a closed terminal, kill), runs a function in a thread of
/// its own and then lets the process end as it would have without. A kind of end that the process was started
/// to ignore, as under nohup, stays ignored. May be called once, before the process has a second thread.
void runAtInterruption(std::function<void()> function);

} // namespace MoxTool::Platform
