#include "MoxReader/FileSource.h"

#include "MoxReader/Error.h"

namespace MoxReader {

namespace {

// On some systems string() fails for a name that the current code page cannot express.
Error openError(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return Error(ErrorCode::OpenFailed, {.path = std::string(text.begin(), text.end())});
}

} // namespace

static_assert(sizeof(std::streamoff) >= 8, "files of more than 4 GiB need 64-bit offsets");

FileSource::FileSource(const std::filesystem::path& path) {
    std::error_code ignored;
    // A directory opens as a stream on some systems, and a pipe has no size.
    if (std::filesystem::is_regular_file(path, ignored)) {
        stream_.open(path, std::ios::binary);
    }
    if (!stream_.is_open()) {
        throw openError(path);
    }
    stream_.seekg(0, std::ios::end);
    const auto end = static_cast<std::streamoff>(stream_.tellg());
    if (end < 0) {
        throw openError(path);
    }
    size_ = static_cast<std::uint64_t>(end);
}

void FileSource::readInside(std::uint64_t offset, std::span<std::uint8_t> target) {
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(offset));
    stream_.read(reinterpret_cast<char*>(target.data()), static_cast<std::streamsize>(target.size()));
    if (!stream_) {
        throw Error(ErrorCode::ReadFailed, {.fileOffset = offset});
    }
}

} // namespace MoxReader
