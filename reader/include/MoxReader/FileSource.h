#pragma once

#include "MoxReader/Source.h"

#include <filesystem>
#include <fstream>

namespace MoxReader {

/// A file on disk, read only when and where it is asked for. Offsets have 64 bits.
class FileSource : public Source {
public:
    /// @throws Error  OpenFailed, with the path, if this is no regular file or cannot be opened.
    explicit FileSource(const std::filesystem::path& path);

    std::uint64_t size() const override { return size_; }

protected:
    void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override;

private:
    std::ifstream stream_;
    std::uint64_t size_ = 0;
};

} // namespace MoxReader
