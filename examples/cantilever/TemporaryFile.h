#pragma once

#include <filesystem>

namespace Cantilever {

/// A file that gets its final name only when it is complete, and that is removed if it never is.
class TemporaryFile {
public:
    /// Makes no file; path() is in the same folder as `finalPath`.
    explicit TemporaryFile(std::filesystem::path finalPath);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// Where to write.
    const std::filesystem::path& path() const { return temporary_; }

    /// Gives the file its final name, replacing a file of that name.
    /// @pre The file is closed.
    /// @throws std::filesystem::filesystem_error
    void keep() const;

private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

} // namespace Cantilever
