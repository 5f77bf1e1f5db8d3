#pragma once

#include <cstdio>
#include <functional>

/// All that depends on the operating system.
namespace MoxTool::Platform {

/// Whether a person sits at the other end.
bool isTerminal(std::FILE* stream);

/// Makes stdin or stdout pass bytes as they are on systems that otherwise change the ends of lines.
void makeBinary(std::FILE* stream);

/// When somebody ends the process from outside (Ctrl-C, a closed terminal, kill), runs a function in a thread
/// of its own and ends it then as it would have ended without. A kind of end that the process was started to
/// ignore, as under nohup, stays ignored. May be called once, before the process has a second thread.
void runAtInterruption(std::function<void()> function);

} // namespace MoxTool::Platform
