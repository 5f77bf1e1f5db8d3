#include "Application.h"
#include "Platform.h"
#include "Terminal.h"
#include "common/TemporaryPath.h"

int main(int argc, char** argv) {
    MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAll);
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
}
