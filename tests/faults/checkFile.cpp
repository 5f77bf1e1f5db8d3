#include "faults/checkFile.h"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace Faults {

namespace {

// The paths of tests have no character that a shell takes for its own.
int run(const std::string& arguments) {
    const std::string command = std::string(MOX_PROGRAM) + " " + arguments + " > /dev/null 2> /dev/null";
    const int status = std::system(command.c_str()); // NOLINT(cert-env33-c): the command is this test's own
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

CheckResult checkFile(const std::string& path) {
    constexpr int whole = 0;
    constexpr int errors = 2;
    constexpr int unreadable = 3;
    const int code = run("check --quiet " + path);
    if (code == whole) {
        return CheckResult::Whole;
    }
    return code == errors || code == unreadable ? CheckResult::Damaged : CheckResult::Failed;
}

unsigned int salvagedBlocks(const std::string& path, const std::string& workFolder) {
    std::filesystem::remove_all(workFolder);
    (void)run("salvage " + path + " " + workFolder);
    unsigned int blocks = 0;
    if (std::filesystem::exists(workFolder)) {
        for (const auto& entry : std::filesystem::directory_iterator(workFolder)) {
            const std::string name = entry.path().filename().string();
            blocks += name.starts_with("block-") && name.find(".part.") == std::string::npos ? 1 : 0;
        }
    }
    return blocks;
}

} // namespace Faults
