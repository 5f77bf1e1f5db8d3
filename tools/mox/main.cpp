#include "Application.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"
#include "common/Terminal.h"

int main(int argc, char** argv) {
    MoxTool::Platform::reserveStandardStreams();
    MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
}
