#pragma once

#include <filesystem>
#include <string>

namespace Support {

/// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// The path of a file in the folder; nothing is made there.
    std::string path(const std::string& name) const;

private:
    std::filesystem::path folder;
};

} // namespace Support
