#include "checkIsFile.h"

#include "Failure.h"
#include "utf8Path.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace MoxTool {

namespace {

namespace fs = std::filesystem;

// What stands at a path where a regular file should.
const char* kindOf(fs::file_type type) {
    switch (type) {
    case fs::file_type::directory:
        return "is a folder, not a file";
    case fs::file_type::fifo:
        return "is a pipe, not a file";
    case fs::file_type::socket:
        return "is a socket, not a file";
    case fs::file_type::block:
    case fs::file_type::character:
        return "is a device, not a file";
    default:
        return "is no regular file";
    }
}

std::string notOpened(const std::error_code& reason) {
    return "can't be opened: " + reason.message();
}

} // namespace

void checkIsFile(const std::string& path) {
    std::error_code error;
    const auto status = fs::status(pathOf(path), error);
    if (status.type() == fs::file_type::not_found) {
        throw Failure(path, "there is no such file");
    }
    if (error) {
        throw Failure(path, notOpened(error));
    }
    if (!fs::is_regular_file(status)) {
        throw Failure(path, kindOf(status.type()));
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        throw Failure(path, notOpened({errno, std::generic_category()}));
    }
    std::fclose(file);
}

} // namespace MoxTool
