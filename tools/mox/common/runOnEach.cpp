#include "runOnEach.h"

#include "Terminal.h"
#include "UsageError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>

namespace MoxTool {

int runOnEach(const Command& command, const std::vector<std::string>& paths, Terminal& terminal, bool gap,
              const std::function<int(const std::string&)>& work) {
    int worst = 0;
    bool isFirst = true;
    // What stands on stdout so far comes before the message.
    const auto fail = [&](const std::string& reason) {
        std::fflush(stdout);
        terminal.error(fmt::format("mox {}: {}", command.name(), reason));
        worst = std::max(worst, command.failureCode());
    };
    for (const auto& path : paths) {
        if (gap && !isFirst) {
            fmt::print("\n");
        }
        isFirst = false;
        try {
            worst = std::max(worst, work(path));
        } catch (const std::bad_alloc&) {
            fail(path + ": not enough memory");
        } catch (const std::exception& failure) {
            if (std::ferror(stdout) != 0) {
                throw; // what the others print would be lost too
            }
            fail(failure.what());
        }
    }
    return worst;
}

void requireOneStdin(const std::vector<std::string>& paths) {
    if (std::ranges::count(paths, "-") > 1) {
        throw UsageError("FILE: - can be given only once");
    }
}

} // namespace MoxTool
