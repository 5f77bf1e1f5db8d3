#pragma once

#include "Application.h"
#include "Messages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// The results of a run of `mox`.
struct MoxRun {
    int exitCode;
    std::string output;   ///< On stdout.
    std::string messages; ///< On stderr.

    /// Whether the messages contain a text.
    bool says(const std::string& text) const { return messages.find(text) != std::string::npos; }
};

/// Runs `mox` with these arguments.
inline MoxRun runMox(const std::vector<std::string>& arguments, bool interactive = false) {
    std::vector<const char*> line = {"mox"};
    for (const auto& argument : arguments) {
        line.push_back(argument.c_str());
    }
    Messages messages(interactive);
    testing::internal::CaptureStdout();
    const int exitCode =
        MoxTool::Application(messages.terminal()).run(static_cast<int>(line.size()), line.data());
    return {exitCode, testing::internal::GetCapturedStdout(), messages.text()};
}
