#include "writeProblem.h"

#include "FileHandle.h"

#include <cerrno>
#include <system_error>
#include <vector>

namespace MoxTool {

std::optional<std::string> writeProblem(const std::string& path) {
    constexpr std::size_t Trial = 65536;
    const std::vector<char> zeros(Trial);
    errno = 0;
    const FileHandle file(std::fopen(path.c_str(), "ab"));
    const bool isWritten = file != nullptr && std::fwrite(zeros.data(), 1, Trial, file.get()) == Trial &&
                           std::fflush(file.get()) == 0;
    const int reason = errno;
    return isWritten ? std::nullopt : std::optional(std::generic_category().message(reason));
}

} // namespace MoxTool
