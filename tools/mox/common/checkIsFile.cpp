#include "checkIsFile.h"

#include "Failure.h"

#include <filesystem>

namespace MoxTool {

void checkIsFile(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        throw Failure(path, "there is no such file");
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw Failure(path, "is no regular file");
    }
}

} // namespace MoxTool
