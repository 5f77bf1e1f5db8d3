#pragma once

#include "Application.h"
#include "Messages.h"

#include <string>
#include <vector>

/// What a run of `mox import` did.
struct ImportRun {
    int exitCode;
    std::string messages;

    bool says(const std::string& text) const { return messages.find(text) != std::string::npos; }
};

/// Runs `mox import` with these arguments.
inline ImportRun runImport(const std::vector<std::string>& arguments) {
    std::vector<const char*> line = {"mox", "import"};
    for (const auto& argument : arguments)
        line.push_back(argument.c_str());
    Messages messages;
    const int exitCode =
        MoxTool::Application(messages.terminal()).run(static_cast<int>(line.size()), line.data());
    return {exitCode, messages.text()};
}
