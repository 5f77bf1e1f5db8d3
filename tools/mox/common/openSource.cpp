#include "openSource.h"

#include "Platform.h"
#include "checkIsFile.h"
#include "readFailure.h"
#include "utf8Path.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/MemorySource.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace MoxTool {

namespace {

std::vector<std::uint8_t> readAll(std::FILE* file) {
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 65536> piece{};
    while (const auto count = std::fread(piece.data(), 1, piece.size(), file)) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return bytes;
}

std::vector<std::uint8_t> readStandardInput() {
    Platform::makeBinary(stdin);
    auto bytes = readAll(stdin);
    if (std::ferror(stdin) != 0) {
        throw Failure("-", "stdin can't be read");
    }
    return bytes;
}

// Such as what a shell gives for <(xz -dc model.mox.xz).
bool isPipe(const std::string& path) {
    std::error_code error;
    const auto type = std::filesystem::status(pathOf(path), error).type();
    return type == std::filesystem::file_type::fifo || type == std::filesystem::file_type::character ||
           type == std::filesystem::file_type::socket;
}

std::vector<std::uint8_t> readPipe(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr) {
        throw Failure(path, "can't be opened; check the path and the permissions");
    }
    auto bytes = readAll(file.get());
    if (std::ferror(file.get()) != 0) {
        throw Failure(path, "can't be read");
    }
    return bytes;
}

} // namespace

std::shared_ptr<MoxReader::Source> openSource(const std::string& path) {
    if (path == "-") {
        return std::make_shared<MoxReader::MemorySource>(readStandardInput());
    }
    if (isPipe(path)) {
        return std::make_shared<MoxReader::MemorySource>(readPipe(path));
    }
    checkIsFile(path);
    return explainErrors(path, [&]() -> std::shared_ptr<MoxReader::Source> {
        return std::make_shared<MoxReader::FileSource>(pathOf(path));
    });
}

} // namespace MoxTool
