#pragma once

#include "Application.h"
#include "common/Terminal.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

/// What `mox` shows with these arguments on a terminal of so many columns: stdout and stderr.
inline std::vector<std::string> linesInTerminal(unsigned short columns,
                                                const std::vector<std::string>& arguments) {
    std::vector<const char*> line = {"mox"};
    for (const auto& argument : arguments) {
        line.push_back(argument.c_str());
    }
    const winsize size = {50, columns, 0, 0};
    int screen = -1;
    const auto child = forkpty(&screen, nullptr, nullptr, &size);
    if (child < 0) {
        throw std::runtime_error("no terminal");
    }
    if (child == 0) {
        auto terminal = MoxTool::Terminal::standardError();
        MoxTool::Application(terminal).run(static_cast<int>(line.size()), line.data());
        std::cout.flush();
        std::fflush(stdout);
        _exit(0);
    }
    std::vector<std::string> lines(1);
    char letter = 0;
    while (read(screen, &letter, 1) == 1) { // fails once the child has closed the terminal
        if (letter == '\n') {
            lines.emplace_back();
        } else if (letter != '\r') {
            lines.back() += letter;
        }
    }
    waitpid(child, nullptr, 0);
    close(screen);
    lines.pop_back();
    return lines;
}

/// The length of the longest line.
inline std::size_t widestOf(const std::vector<std::string>& lines) {
    std::size_t widest = 0;
    for (const auto& line : lines) {
        widest = std::max(widest, line.size());
    }
    return widest;
}
