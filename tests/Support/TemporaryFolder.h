#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Support {

/// A folder for one test, removed with all its contents. Names and paths are in UTF-8.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// The path of a file in the folder; nothing is created.
    std::string path(const std::string& name) const;

    /// Creates a file.
    /// @return its path.
    std::string write(const std::string& name, const std::string& content) const;
    /// All bytes of a file.
    std::string read(const std::string& name) const;
    /// The names of everything in the folder, sorted.
    std::vector<std::string> files() const;

private:
    std::filesystem::path folder_;
};

} // namespace Support
