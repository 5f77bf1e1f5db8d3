#pragma once

#include <filesystem>

namespace MoxTool {

/// A path for a file or folder that grows until it may have its target's name. What is there at the end of
/// this object goes away, and likewise when somebody ends the process, see removeAll().
class TemporaryPath {
public:
    /// Chooses a path beside the target at which there is nothing yet. Creates nothing.
    /// @param wanted The target.
    explicit TemporaryPath(const std::filesystem::path& wanted);
    TemporaryPath(const TemporaryPath&) = delete;
    TemporaryPath& operator=(const TemporaryPath&) = delete;
    /// Removes what is at the path, a folder with all that is in it. Never throws.
    ~TemporaryPath();

    const std::filesystem::path& path() const { return temporary_; }

    /// @throws Failure with the target's name if what is at the path can't be a folder.
    void createFolder() const;

    /// Gives what is at the path the target's name.
    /// @throws Failure with the target's name if that fails.
    void moveToTarget() const;

    /// A path beside the target at which there is nothing.
    static std::filesystem::path unusedBeside(const std::filesystem::path& target);

    /// Removes what is at all paths that exist in this process. Other threads may go on using them.
    static void removeAll();

private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

} // namespace MoxTool
