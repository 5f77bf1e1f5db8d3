#include "openSource.h"

#include "Platform.h"
#include "checkIsFile.h"
#include "readFailure.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/MemorySource.h>

#include <array>
#include <cstdio>
#include <vector>

namespace MoxTool {

namespace {

std::vector<std::uint8_t> readStandardInput() {
    Platform::makeBinary(stdin);
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 65536> piece{};
    while (const auto count = std::fread(piece.data(), 1, piece.size(), stdin)) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    }
    if (std::ferror(stdin) != 0) {
        throw Failure("-", "stdin can't be read");
    }
    return bytes;
}

} // namespace

std::shared_ptr<MoxReader::Source> openSource(const std::string& path) {
    if (path == "-") {
        return std::make_shared<MoxReader::MemorySource>(readStandardInput());
    }
    checkIsFile(path);
    return explainErrors(path, [&] { return std::make_shared<MoxReader::FileSource>(path); });
}

} // namespace MoxTool
