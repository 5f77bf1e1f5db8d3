#include "Application.h"
#include "Terminal.h"

int main(int argc, char** argv) {
    auto terminal = MoxTool::Terminal::standardError();
    return MoxTool::Application(terminal).run(argc, argv);
}
