#include "Application.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"
#include "common/Terminal.h"

int main(int argc, char** argv) {
    MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAll);
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
}
