#pragma once

#include <sys/resource.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Program {

/// What mox meets outside of itself.
struct Circumstances {
    struct Signal {
        int number;
        std::chrono::microseconds after; ///< The start.
    };

    std::map<std::string, std::string> environment{};
    std::optional<rlim_t> largestFile{}; ///< In bytes: a write beyond it fails, and those up to it are done.
    std::optional<Signal> signal{};
    bool isOutputAFile = false; ///< Not a pipe.
};

/// How a run of mox has ended.
struct End {
    int exitCode = -1; ///< -1 if a signal ended it.
    int signal = 0;
    std::string output{};   ///< On stdout.
    std::string messages{}; ///< On stderr.
};

/// Runs mox in a process of its own.
End runMox(const std::vector<std::string>& arguments, const Circumstances& circumstances = {});

} // namespace Program
