#include "Application.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"
#include "common/Terminal.h"

#include <cstdio>

int main(int argc, char** argv) {
    MoxTool::Platform::reserveStandardStreams();
    MoxTool::Platform::makeBinary(stdout); // what is printed is the same on every system
    MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
}
